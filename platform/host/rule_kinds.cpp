#include "platform/host/rule_kinds.hpp"

#include "platform/host/ipv4.hpp"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace kova::host {

namespace {

constexpr int refused = -1; // by a rule that tells no faults apart

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
  long number = 0;
  const auto parsed = std::from_chars(value.data(), value.data() + value.size(), number);
  return parsed.ec == std::errc() && number >= min && number <= max ? accepted : outside;
}

int OneOf::judge(std::string_view value) const {
  for (std::string_view rest = words; !rest.empty();) {
    const std::string_view word = rest.substr(0, rest.find(' '));
    if (word == value) return accepted;
    rest.remove_prefix(std::min(word.size() + 1, rest.size()));
  }
  return refused;
}

int Text::judge(std::string_view value) const {
  const bool fits = value.size() >= min && value.size() <= max;
  return fits && std::ranges::all_of(value, allowed) ? accepted : refused;
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
  const bool has_letter = std::ranges::any_of(value, letter);
  if (!has_letter) return Ipv4Address{Ipv4Address::Of::server}.judge(value);
  return is_host_name(value) ? accepted : bad_format;
}

} // namespace kova::host
