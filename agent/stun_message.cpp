#include "agent/stun_message.hpp"

#include <arpa/inet.h>
#include <nettle/hmac.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>

namespace kova::agent {
namespace {

constexpr std::size_t header_size = 20, integrity_size = 20;
constexpr unsigned binding_request = 0x0001, binding_answer = 0x0101, binding_error = 0x0111;
constexpr unsigned mapped_address = 0x0001, username_attribute = 0x0006, message_integrity = 0x0008,
                   error_code = 0x0009, xor_mapped_address = 0x0020, connection_request_binding = 0xC001,
                   binding_change = 0xC002;
constexpr std::string_view binding_mark = "dslforum.org/TR-111 ";

void put_number(std::string &bytes, unsigned number) {
  bytes += static_cast<char>(number >> 8U);
  bytes += static_cast<char>(number & 0xFFU);
}

unsigned number_at(std::string_view bytes, std::size_t at) {
  return static_cast<unsigned char>(bytes[at]) * 256U + static_cast<unsigned char>(bytes[at + 1]);
}

void put_attribute(std::string &bytes, unsigned type, std::string_view value) {
  put_number(bytes, type);
  const std::size_t padded = (value.size() + 3) / 4 * 4;
  put_number(bytes, static_cast<unsigned>(padded));
  bytes += value;
  bytes.append(padded - value.size(), type == username_attribute ? ' ' : '\0');
}

void put_length(std::string &bytes, std::size_t length) {
  bytes[2] = static_cast<char>(length >> 8U);
  bytes[3] = static_cast<char>(length & 0xFFU);
}

std::string hmac_sha1(std::string_view key, std::string_view text) {
  const auto bytes = [](std::string_view of) { return reinterpret_cast<const std::uint8_t *>(of.data()); };
  std::uint8_t digest[SHA1_DIGEST_SIZE];
  hmac_sha1_ctx hash;
  hmac_sha1_set_key(&hash, key.size(), bytes(key));
  hmac_sha1_update(&hash, text.size(), bytes(text));
  hmac_sha1_digest(&hash, sizeof digest, digest);
  return {reinterpret_cast<const char *>(digest), sizeof digest};
}

sockaddr_in address_from(std::string_view value, bool is_masked) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  std::memcpy(&address.sin_port, value.data() + 2, 2);
  std::memcpy(&address.sin_addr, value.data() + 4, 4);
  if (is_masked) {
    address.sin_port ^= htons(stun::magic_cookie >> 16U);
    address.sin_addr.s_addr ^= htonl(stun::magic_cookie);
  }
  return address;
}

std::string decoded(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i)
    if (text[i] == '%' && i + 2 < text.size()) {
      out += static_cast<char>(std::strtol(std::string(text.substr(i + 1, 2)).c_str(), nullptr, 16));
      i += 2;
    } else
      out += text[i];
  return out;
}

} // namespace

namespace stun {

std::string encode(const BindingRequest &request) {
  std::string bytes;
  put_number(bytes, binding_request);
  put_number(bytes, 0);
  bytes.append(reinterpret_cast<const char *>(request.id.data()), request.id.size());
  put_attribute(bytes, connection_request_binding, binding_mark);
  if (request.binding_has_changed) put_attribute(bytes, binding_change, "");
  if (!request.username.empty()) put_attribute(bytes, username_attribute, request.username);
  put_length(bytes, bytes.size() - header_size);
  if (request.username.empty()) return bytes;
  put_length(bytes, bytes.size() - header_size + 4 + integrity_size);
  std::string text = bytes;
  text.resize((text.size() + 63) / 64 * 64, '\0');
  put_attribute(bytes, message_integrity, hmac_sha1(request.password, text));
  return bytes;
}

std::optional<BindingAnswer> decode(std::string_view message, const TransactionId &id) {
  if (message.size() < header_size || std::memcmp(message.data() + 4, id.data(), id.size()) != 0)
    return std::nullopt;
  const unsigned type = number_at(message, 0);
  if ((type != binding_answer && type != binding_error) ||
      number_at(message, 2) > message.size() - header_size)
    return std::nullopt;
  BindingAnswer answer;
  std::string_view rest = message.substr(header_size, number_at(message, 2));
  while (rest.size() >= 4) {
    const unsigned attribute = number_at(rest, 0), length = number_at(rest, 2);
    if (length > rest.size() - 4) return std::nullopt;
    const std::string_view value = rest.substr(4, length);
    if ((attribute == mapped_address || attribute == xor_mapped_address) && length == 8 && value[1] == 1)
      answer.mapped = address_from(value, attribute == xor_mapped_address);
    if (attribute == error_code && length >= 4) answer.wants_credentials = value[2] == 4 && value[3] == 1;
    rest.remove_prefix(std::min(rest.size(), std::size_t{4} + (length + 3) / 4 * 4));
  }
  if (type == binding_error) answer.mapped.reset();
  return answer;
}

} // namespace stun

std::optional<UdpRequest> signed_request(std::string_view message, const std::string &username,
                                         const std::string &password) {
  const std::size_t query = message.find('?'), end = message.find(" HTTP/1.");
  if (!message.starts_with("GET ") || query == std::string_view::npos || end == std::string_view::npos ||
      end < query)
    return std::nullopt;
  std::map<std::string, std::string, std::less<>> fields;
  std::string_view rest = message.substr(query + 1, end - query - 1);
  while (!rest.empty()) {
    const std::string_view field = rest.substr(0, rest.find('&'));
    if (const std::size_t equals = field.find('='); equals != std::string_view::npos)
      fields.emplace(field.substr(0, equals), decoded(field.substr(equals + 1)));
    rest.remove_prefix(std::min(rest.size(), field.size() + 1));
  }
  const std::string signature =
      hmac_sha1(password, fields["ts"] + fields["id"] + fields["un"] + fields["cn"]);
  std::string digits;
  for (const char byte : signature) {
    char text[3];
    std::snprintf(text, sizeof text, "%02x", static_cast<unsigned char>(byte));
    digits += text;
  }
  std::string given = fields["sig"];
  std::ranges::transform(given, given.begin(), [](unsigned char c) { return std::tolower(c); });
  const bool is_number = !fields["ts"].empty() && fields["ts"].size() < 19 &&
                         fields["ts"].find_first_not_of("0123456789") == std::string::npos;
  if (!is_number || username.empty() || fields["un"] != username || given != digits) return std::nullopt;
  return UdpRequest{fields["ts"], fields["id"]};
}

} // namespace kova::agent
