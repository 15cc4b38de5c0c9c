// The rules of numbers, texts and address ranges that the device's web pages share with the data model.
#include "platform/host/characters.hpp"
#include "platform/host/ipv4.hpp"
#include "platform/host/ipv6.hpp"
#include "platform/host/whole_number.hpp"
#include "platform/webs.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

using kova::host::parse_ipv6;
using kova::host::parse_quad;
using kova::host::QuadFault;

namespace {

std::string_view text_of(const char *text) {
  return text == nullptr ? "" : text;
}

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

// In the one spelling that a number has: who stores "01" for a switch has not switched it on.
bool in_range(std::string_view text, int min, int max) {
  const auto number = kova::host::whole_number<int>(text);
  return number && *number >= min && *number <= max && text == std::to_string(*number);
}

// Codes of the range checks.
constexpr int in_order = 0, no_addresses = 1, start_above_end = 5;

int octet_is(const char *ip, uint32_t octet) {
  const auto quad = parse_quad(text_of(ip));
  return quad.fault == QuadFault::none && (quad.address & 255U) == octet ? -1 : 0;
}

struct Prefixed {
  std::string_view address, prefix;
  bool has_prefix;
  explicit Prefixed(std::string_view text)
      : address(text.substr(0, text.find('/'))), has_prefix(address.size() < text.size()) {
    if (has_prefix) prefix = text.substr(address.size() + 1);
  }
};

bool is_url_text(std::string_view url) {
  constexpr std::string_view hexadecimal = "0123456789abcdefABCDEF";
  if (!std::ranges::all_of(url, kova::host::url_character)) return false;
  for (std::size_t at = url.find('%'); at != std::string_view::npos; at = url.find('%', at + 1))
    if (url.size() - at < 3 || url.find_first_not_of(hexadecimal, at + 1) < at + 3) return false;
  return true;
}

} // namespace

int websLengthRule(const char *text, int max) {
  return max >= 0 && text_of(text).size() <= static_cast<std::size_t>(max) ? 1 : 0;
}

int webcheckNumber(const char *text) {
  const std::string_view digits = text_of(text);
  return !digits.empty() && std::ranges::all_of(digits, is_digit) ? 1 : 0;
}

int webscheckRange(const char *text, int min, int max) {
  return in_range(text_of(text), min, max) ? 1 : 0;
}

int websInputValueRule(const char *value, int min, int max) {
  return in_range(text_of(value), min, max) ? 1 : 0;
}

// An address of the web or a part of one, which is all that a keyword can be.
int websCheckURL(const char *url) {
  constexpr int valid = 0, refused = -1;
  const std::string_view text = text_of(url);
  if (text.empty() || !is_url_text(text)) return refused;
  const std::size_t scheme = text.find("://");
  if (scheme == std::string_view::npos) return valid;
  const bool names_server = scheme > 0 && text.size() > scheme + 3 && text[scheme + 3] != '/';
  return names_server ? valid : refused;
}

int check_ipv4_start_end(const char *start, const char *end) {
  if (text_of(end).empty()) return in_order;
  const auto first = parse_quad(text_of(start)), last = parse_quad(text_of(end));
  if (first.fault != QuadFault::none || last.fault != QuadFault::none) return no_addresses;
  return first.address <= last.address ? in_order : start_above_end;
}

int check_ipv6_start_end(const char *start, const char *end) {
  if (text_of(end).empty()) return in_order;
  const auto first = parse_ipv6(Prefixed(text_of(start)).address),
             last = parse_ipv6(Prefixed(text_of(end)).address);
  if (!first || !last) return no_addresses;
  return std::memcmp(&*first, &*last, sizeof *first) <= 0 ? in_order : start_above_end;
}

int is_ip6_and_prefix_valid(const char *text) {
  constexpr int valid = 0, invalid = -1, longest_prefix = 128;
  const Prefixed parts(text_of(text));
  const bool prefix_fits = !parts.has_prefix || in_range(parts.prefix, 0, longest_prefix);
  return prefix_fits && parse_ipv6(parts.address) ? valid : invalid;
}

int isIpLastChar0(const char *ip) {
  return octet_is(ip, 0);
}

int isIpLastChar255(const char *ip) {
  return octet_is(ip, 255);
}

int checkIpPrivate(const char *ip) {
  return kova::host::is_private(parse_quad(text_of(ip)).address) ? 1 : 0;
}

int split(char **array, char *text, const char *separator) {
  if (array == nullptr || text == nullptr) return 0;
  const std::string_view between = text_of(separator);
  int count = 0;
  array[count++] = text;
  if (between.empty()) return count;
  while ((text = std::strstr(text, separator)) != nullptr) {
    *text = '\0';
    text += between.size();
    array[count++] = text;
  }
  return count;
}
