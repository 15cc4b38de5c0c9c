// The rules of numbers, texts and address ranges that the device's web pages share with the data model.
#include "platform/host/characters.hpp"
#include "platform/host/complaints.hpp"
#include "platform/host/ipv4.hpp"
#include "platform/host/ipv6.hpp"
#include "platform/host/text_of.hpp"
#include "platform/host/whole_number.hpp"
#include "platform/webs.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

using kova::host::complained;
using kova::host::parse_ipv6;
using kova::host::parse_quad;
using kova::host::QuadFault;
using kova::host::text_of;

namespace {

// In the one spelling that a number has: who stores "01" for a switch has not switched it on.
bool in_range(std::string_view text, int min, int max) {
  const auto number = kova::host::whole_number<int>(text);
  return number && *number >= min && *number <= max && text == std::to_string(*number);
}

// Codes of the range checks.
constexpr int in_order = 0, no_addresses = 1, start_above_end = 5;

int last_octet_is(const char *ip, uint32_t octet) {
  const auto quad = parse_quad(text_of(ip));
  if (quad.fault != QuadFault::none || (quad.address & 255U) != octet) return 0;
  return complained(-1, {text_of(ip), " ends in ", std::to_string(octet)});
}

int judge_range(const char *value, int min, int max) {
  if (in_range(text_of(value), min, max)) return 1;
  return complained(
      0, {"\"", text_of(value), "\" is no number from ", std::to_string(min), " to ", std::to_string(max)});
}

// Of a range that is judged: what the addresses are, and whether they are in order.
int judge_order(const char *start, const char *end, std::string_view kind, bool are_addresses, bool ordered) {
  if (are_addresses && ordered) return in_order;
  if (are_addresses) return complained(start_above_end, {text_of(start), " is above ", text_of(end)});
  return complained(no_addresses, {"\"", text_of(start), "\" to \"", text_of(end), "\" is no range of ", kind,
                                   " addresses"});
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
  if (!std::ranges::all_of(url, kova::host::url_character.holds)) return false;
  for (std::size_t at = url.find('%'); at != std::string_view::npos; at = url.find('%', at + 1))
    if (url.size() - at < 3 || !std::ranges::all_of(url.substr(at + 1, 2), kova::host::hex_digit.holds))
      return false;
  return true;
}

} // namespace

int websLengthRule(const char *text, int max) {
  if (max >= 0 && text_of(text).size() <= static_cast<std::size_t>(max)) return 1;
  return complained(0, {"\"", text_of(text), "\" has more than ", std::to_string(max), " characters"});
}

int webcheckNumber(const char *text) {
  const std::string_view digits = text_of(text);
  if (!digits.empty() && std::ranges::all_of(digits, kova::host::is_digit)) return 1;
  return complained(0, {"\"", digits, "\" is no number"});
}

int webscheckRange(const char *text, int min, int max) {
  return judge_range(text, min, max);
}

int websInputValueRule(const char *value, int min, int max) {
  return judge_range(value, min, max);
}

// An address of the web or a part of one, which is all that a keyword can be.
int websCheckURL(const char *url) {
  constexpr int valid = 0, refused = -1;
  const std::string_view text = text_of(url);
  const std::size_t scheme = text.find("://");
  const bool names_server =
      scheme == std::string_view::npos || (scheme > 0 && text.size() > scheme + 3 && text[scheme + 3] != '/');
  if (!text.empty() && is_url_text(text) && names_server) return valid;
  return complained(refused, {"\"", text, "\" is neither a URL nor a part of one"});
}

int check_ipv4_start_end(const char *start, const char *end) {
  if (text_of(end).empty()) return in_order;
  const auto first = parse_quad(text_of(start)), last = parse_quad(text_of(end));
  const bool are_addresses = first.fault == QuadFault::none && last.fault == QuadFault::none;
  return judge_order(start, end, "IPv4", are_addresses, first.address <= last.address);
}

int check_ipv6_start_end(const char *start, const char *end) {
  if (text_of(end).empty()) return in_order;
  const auto first = parse_ipv6(Prefixed(text_of(start)).address),
             last = parse_ipv6(Prefixed(text_of(end)).address);
  const bool are_addresses = first && last;
  return judge_order(start, end, "IPv6", are_addresses,
                     are_addresses && std::memcmp(&*first, &*last, sizeof *first) <= 0);
}

int is_ip6_and_prefix_valid(const char *text) {
  constexpr int valid = 0, invalid = -1, longest_prefix = 128;
  const Prefixed parts(text_of(text));
  const bool prefix_fits = !parts.has_prefix || in_range(parts.prefix, 0, longest_prefix);
  if (prefix_fits && parse_ipv6(parts.address)) return valid;
  return complained(invalid, {"\"", text_of(text), "\" is no IPv6 address or prefix"});
}

int isIpLastChar0(const char *ip) {
  return last_octet_is(ip, 0);
}

int isIpLastChar255(const char *ip) {
  return last_octet_is(ip, 255);
}

int checkIpPrivate(const char *ip) {
  if (kova::host::is_private(parse_quad(text_of(ip)).address)) return 1;
  return complained(0, {"\"", text_of(ip), "\" is not a private IPv4 address"});
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
