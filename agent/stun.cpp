#include "agent/stun.hpp"

#include "agent/attributes.hpp"
#include "agent/log.hpp"
#include "agent/names.hpp"
#include "agent/reach.hpp"
#include "agent/values.hpp"
#include "platform/host/nvram_admin.hpp"

#include <arpa/inet.h>
#include <kova/frame.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <sys/random.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>

namespace kova::agent {
namespace {

constexpr std::size_t header_size = 20, integrity_size = 20;
constexpr unsigned binding_request = 0x0001, binding_answer = 0x0101, binding_error = 0x0111;
constexpr unsigned mapped_address = 0x0001, username_attribute = 0x0006, message_integrity = 0x0008,
                   error_code = 0x0009, xor_mapped_address = 0x0020, connection_request_binding = 0xC001,
                   binding_change = 0xC002;
constexpr std::string_view binding_mark = "dslforum.org/TR-111 ";
constexpr std::uint32_t magic_cookie = 0x2112A442;

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
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned size = 0;
  HMAC(EVP_sha1(), key.data(), static_cast<int>(key.size()),
       reinterpret_cast<const unsigned char *>(text.data()), text.size(), digest, &size);
  return {reinterpret_cast<const char *>(digest), size};
}

sockaddr_in address_from(std::string_view value, bool is_masked) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  std::memcpy(&address.sin_port, value.data() + 2, 2);
  std::memcpy(&address.sin_addr, value.data() + 4, 4);
  if (is_masked) {
    address.sin_port ^= htons(magic_cookie >> 16U);
    address.sin_addr.s_addr ^= htonl(magic_cookie);
  }
  return address;
}

std::string as_text(const sockaddr_in &address) {
  char text[INET_ADDRSTRLEN];
  inet_ntop(AF_INET, &address.sin_addr, text, sizeof text);
  return text;
}

// The getters of the user and the password always answer "".
std::string stored_setting(const char *key) {
  return host::nvram_find(host::configuration_section,
                          (gSecondaryInstance != 0 ? "S_" : "") + std::string(key))
      .value_or("");
}

void set_own(const char *path, const std::string &value) {
  model::find(path)->set.call(value.c_str());
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

bool is_first(Store &store, const UdpRequest &request) {
  bool first = false;
  store.change([&](Transaction &change) {
    // "TIME\nID\nID...": of the newest time, all that came.
    const std::string last = change.get(stored::udp_requests).value_or("0\n");
    const long long now = std::stoll(request.timestamp), before = std::stoll(last);
    first =
        now > before || (now == before && (last + "\n").find("\n" + request.id + "\n") == std::string::npos);
    if (first)
      change.put(stored::udp_requests, (now > before ? request.timestamp : last) + "\n" + request.id);
  });
  return first;
}

struct Stun::Resolving {
  uv_getaddrinfo_t query{};
  Stun *stun;
  std::weak_ptr<bool> alive;
};

Stun::Stun(uv_loop_t *loop, Store &store, std::function<void()> requested)
    : loop_(loop), store_(store), requested_(std::move(requested)) {}

Stun::~Stun() {
  close();
}

void Stun::open() {
  socket_ = new uv_udp_t{};
  uv_udp_init(loop_, socket_);
  socket_->data = this;
  sockaddr_in any{};
  uv_ip4_addr("0.0.0.0", 0, &any);
  uv_udp_bind(socket_, reinterpret_cast<sockaddr *>(&any), 0);
  uv_udp_recv_start(
      socket_,
      [](uv_handle_t *, std::size_t, uv_buf_t *buffer) {
        static char room[2048];
        *buffer = uv_buf_init(room, sizeof room);
      },
      [](uv_udp_t *socket, ssize_t size, const uv_buf_t *buffer, const sockaddr *, unsigned) {
        if (size > 0)
          static_cast<Stun *>(socket->data)->receive({buffer->base, static_cast<std::size_t>(size)});
      });
}

void Stun::close() {
  if (socket_ == nullptr) return;
  uv_close(reinterpret_cast<uv_handle_t *>(std::exchange(socket_, nullptr)),
           [](uv_handle_t *handle) { delete reinterpret_cast<uv_udp_t *>(handle); });
  server_.clear();
  address_.reset();
  mapped_.clear();
  published_.clear();
  awaits_answer_ = wants_credentials_ = has_changed_ = false;
}

void Stun::resolve(const std::string &host, const std::string &port) {
  server_ = host + ":" + port;
  address_.reset();
  auto *resolving = new Resolving{{}, this, alive_};
  resolving->query.data = resolving;
  addrinfo hints{};
  hints.ai_family = AF_INET;
  hints.ai_socktype = SOCK_DGRAM;
  const int failed = uv_getaddrinfo(
      loop_, &resolving->query,
      [](uv_getaddrinfo_t *query, int status, addrinfo *found) {
        const std::unique_ptr<Resolving> done(static_cast<Resolving *>(query->data));
        if (status == 0 && !done->alive.expired()) {
          std::memcpy(&done->stun->address_.emplace(), found->ai_addr, sizeof(sockaddr_in));
          done->stun->next_request_ = 0;
        }
        uv_freeaddrinfo(found);
      },
      host.c_str(), port.c_str(), &hints);
  if (failed != 0) delete resolving;
}

void Stun::settle() {
  if (!is_true(read_value(store_, parameter::stun_enable))) {
    if (socket_ == nullptr) return;
    set_own(parameter::nat_detected, "0");
    set_own(parameter::udp_connection_request_address, "");
    return close();
  }
  if (socket_ == nullptr) open();
  const std::string host = read_value(store_, parameter::stun_server_address),
                    port = read_value(store_, parameter::stun_server_port);
  constexpr std::time_t look_up_again = 60;
  const std::time_t now = std::time(nullptr);
  // Without a server of its own the ACS is meant; its name has to be given here all the same.
  if (host.empty()) return;
  if (server_ != host + ":" + port || (!address_ && now >= next_request_)) {
    next_request_ = now + look_up_again;
    return resolve(host, port);
  }
  if (!address_) return;
  constexpr int most_attempts = 4;
  if (awaits_answer_ && attempts_ < most_attempts) {
    ++attempts_;
    return send_request();
  }
  if (now >= next_request_) {
    // Both bounds hold for the least period, which also keeps bindings of short-lived NATs.
    next_request_ =
        now + std::max(1L, std::strtol(read_value(store_, parameter::stun_minimum_keep_alive).c_str(),
                                       nullptr, 10));
    attempts_ = 1;
    if (getrandom(id_.data(), id_.size(), 0) < 0) return;
    const std::uint32_t cookie = htonl(magic_cookie);
    std::memcpy(id_.data(), &cookie, sizeof cookie);
    send_request();
  }
  publish(now);
}

void Stun::send_request() {
  awaits_answer_ = true;
  const std::string user = wants_credentials_ ? stored_setting("TR_STUN_USER") : "",
                    password = wants_credentials_ ? stored_setting("TR_STUN_PASS") : "";
  std::string message = stun::encode({id_, has_changed_, user, password});
  uv_buf_t buffer = uv_buf_init(message.data(), static_cast<unsigned>(message.size()));
  uv_udp_try_send(socket_, &buffer, 1, reinterpret_cast<sockaddr *>(&*address_));
}

void Stun::receive(std::string_view message) {
  if (message.starts_with("GET ")) {
    const auto request = signed_request(message, read_value(store_, parameter::connection_request_username),
                                        read_value(store_, parameter::connection_request_password));
    if (request && is_first(store_, *request)) requested_();
    return;
  }
  const auto answer = awaits_answer_ ? stun::decode(message, id_) : std::nullopt;
  if (!answer) return;
  awaits_answer_ = false;
  if (answer->wants_credentials && !wants_credentials_) {
    wants_credentials_ = true;
    next_request_ = 0;
  } else if (answer->mapped)
    bound(*answer->mapped);
}

void Stun::bound(const sockaddr_in &mapped) {
  sockaddr_in own{};
  int length = sizeof own;
  uv_udp_getsockname(socket_, reinterpret_cast<sockaddr *>(&own), &length);
  behind_nat_ = as_text(mapped) != own_address(as_text(*address_), "9") || mapped.sin_port != own.sin_port;
  const std::string now = as_text(mapped) + ":" + std::to_string(ntohs(mapped.sin_port));
  const bool changed = now != mapped_;
  mapped_ = now;
  if (changed && !has_changed_) next_request_ = 0; // the server hears of the change once
  has_changed_ = changed;
  publish(std::time(nullptr));
}

// Its change is reported to the ACS at once, so it is not shown more often than the ACS wants to hear of it.
void Stun::publish(std::time_t now) {
  if (mapped_.empty() || mapped_ == published_ || now < earliest_notice_) return;
  set_own(parameter::nat_detected, behind_nat_ ? "1" : "0");
  set_own(parameter::udp_connection_request_address, mapped_);
  earliest_notice_ = now + std::strtol(stored_setting("TR_UDPCR_LIMIT").c_str(), nullptr, 10);
  published_ = mapped_;
  log("STUN: bound to " + mapped_ + (behind_nat_ ? ", behind a NAT" : ""));
}

} // namespace kova::agent
