#include "platform/host/rule_kinds.hpp"

#include "platform/host/ipv4.hpp"
#include "platform/host/whole_number.hpp"

#include <arpa/inet.h>

#include <algorithm>
#include <string>

namespace kova::host {

namespace {

constexpr int refused = -1; // by a rule that tells no faults apart
constexpr std::size_t longest_stored = 255;

bool digit(char c) {
  return c >= '0' && c <= '9';
}

bool letter(char c) {
  const int lower = c | 0x20;
  return lower >= 'a' && lower <= 'z';
}

bool hex_digit(char c) {
  const int lower = c | 0x20;
  return digit(c) || (lower >= 'a' && lower <= 'f');
}

int quad_code(std::string_view value, QuadFault fault) {
  if (value.empty()) return empty_value;
  if (fault == QuadFault::number) return bad_number;
  return fault == QuadFault::format ? bad_format : accepted;
}

bool is_name_label(std::string_view label) {
  constexpr std::size_t longest = 63;
  return !label.empty() && label.size() <= longest && label.front() != '-' && label.back() != '-' &&
         std::ranges::all_of(label, [](char c) { return letter(c) || digit(c) || c == '-'; });
}

bool is_host_name(std::string_view name) {
  constexpr std::size_t longest = 253;
  if (name.size() > longest) return false;
  while (true) {
    const std::size_t dot = name.find('.');
    if (!is_name_label(name.substr(0, dot))) return false;
    if (dot == std::string_view::npos) return true;
    name.remove_prefix(dot + 1);
  }
}

// Takes the beginning off the text when it is the wanted one, letters of either case.
bool take_scheme(std::string_view &text, std::string_view scheme) {
  const bool begins = text.size() >= scheme.size() &&
                      std::ranges::equal(text.substr(0, scheme.size()), scheme, [](char one, char other) {
                        return (letter(one) ? one | 0x20 : one) == other;
                      });
  if (begins) text.remove_prefix(scheme.size());
  return begins;
}

bool is_ipv6(std::string_view text) {
  in6_addr address;
  return inet_pton(AF_INET6, std::string(text).c_str(), &address) == 1;
}

// "server", "server:port"; an IPv6 address stands in brackets.
bool is_web_server(std::string_view authority) {
  bool known = false;
  if (authority.starts_with('[')) {
    const std::size_t end = std::min(authority.find(']'), authority.size() - 1);
    known = authority[end] == ']' && is_ipv6(authority.substr(1, end - 1));
    authority.remove_prefix(end + 1);
  } else {
    const std::size_t end = std::min(authority.find(':'), authority.size());
    known = ServerAddressOrName{}.judge(authority.substr(0, end)) == accepted;
    authority.remove_prefix(end);
  }
  if (!known || authority.empty()) return known;
  return authority.front() == ':' && Number{1, 65535}.judge(authority.substr(1)) == accepted;
}

// The text against a form in which "A" stands for a capital letter, "9" for a digit, all else for itself.
bool has_form(std::string_view text, std::string_view form) {
  return std::ranges::equal(text, form, [](char c, char of_form) {
    if (of_form == 'A') return c >= 'A' && c <= 'Z';
    return of_form == '9' ? digit(c) : c == of_form;
  });
}

} // namespace

bool printable(char c) {
  return c >= ' ' && c <= '~';
}

bool host_name_character(char c) {
  return letter(c) || digit(c) || c == '.' || c == '_' || c == '-';
}

int Number::judge(std::string_view value) const {
  if (value.empty()) return empty;
  if (!std::ranges::all_of(value, digit)) return outside;
  const auto number = whole_number<std::int64_t>(value);
  return number && *number >= min && *number <= max ? accepted : outside;
}

int OneOf::judge(std::string_view value) const {
  for (std::string_view rest = words; !rest.empty();) {
    const std::string_view word = rest.substr(0, rest.find(' '));
    if (word == value) return accepted;
    rest.remove_prefix(std::min(word.size() + 1, rest.size()));
  }
  return value.empty() ? empty_value : other;
}

int Text::judge(std::string_view value) const {
  const bool fits = value.size() >= min && value.size() <= max;
  if (fits && std::ranges::all_of(value, allowed)) return accepted;
  return value.empty() ? empty_value : other;
}

int WpaPassPhrase::judge(std::string_view value) const {
  constexpr std::size_t key_digits = 64;
  if (value.size() == key_digits) return std::ranges::all_of(value, hex_digit) ? accepted : refused;
  return Text{8, 63, printable}.judge(value);
}

int Ipv4Address::judge(std::string_view value) const {
  const Quad quad = parse_quad(value);
  if (const int code = quad_code(value, quad.fault); code != accepted) return code;
  if (of == Of::server) return is_unicast(quad.address) ? accepted : bad_host;
  if (!is_private(quad.address)) return bad_network;
  const std::uint32_t last = quad.address & 255U;
  return last == 0 || last == 255 ? bad_host : accepted;
}

int Ipv4Netmask::judge(std::string_view value) const {
  const Quad quad = parse_quad(value);
  if (const int code = quad_code(value, quad.fault); code != accepted) return code;
  return is_netmask(quad.address) ? accepted : bad_network;
}

int ServerAddressOrName::judge(std::string_view value) const {
  if (may_be_empty && value.empty()) return accepted;
  const bool has_letter = std::ranges::any_of(value, letter);
  if (!has_letter) return Ipv4Address{Ipv4Address::Of::server}.judge(value);
  return is_host_name(value) ? accepted : bad_format;
}

int WebUrl::judge(std::string_view value) const {
  if (value.empty()) return empty_value;
  const auto visible = [](char c) { return printable(c) && c != ' '; };
  if (value.size() > longest_stored || !std::ranges::all_of(value, visible)) return bad_value;
  if (!take_scheme(value, "http://") && !take_scheme(value, "https://")) return bad_value;
  return is_web_server(value.substr(0, value.find_first_of("/?#"))) ? accepted : bad_value;
}

int TimeZone::judge(std::string_view value) const {
  if (value.empty()) return empty_value;
  for (const std::string_view form : {"AAA_099", "AAA_-99", "A_99:99", "A_-9:99"})
    if (has_form(value, form)) return accepted;
  const bool is_offset = has_form(value, "+99:99") || has_form(value, "-99:99");
  const bool is_of_earth = is_offset && value.substr(1, 2) <= "14" && value.substr(4) <= "59";
  return is_of_earth ? accepted : bad_value;
}

} // namespace kova::host
