#include "platform/host/address_kinds.hpp"

#include "platform/host/characters.hpp"
#include "platform/host/ipv4.hpp"
#include "platform/host/ipv6.hpp"
#include "platform/host/lan.hpp"

#include <algorithm>
#include <string>

namespace kova::host {

namespace {

constexpr std::size_t longest_url = 255;

// Of XML Schema: what can be an IPv4 address by its form.
constexpr const char *quad_pattern =
    "((25[0-5]|2[0-4][0-9]|1[0-9]{2}|[1-9]?[0-9])\\.){3}(25[0-5]|2[0-4][0-9]|1[0-9]{2}|[1-9]?[0-9])";

int quad_code(std::string_view value, QuadFault fault) {
  if (value.empty()) return empty_value;
  if (fault == QuadFault::number) return bad_number;
  return fault == QuadFault::format ? bad_format : accepted;
}

bool is_name_label(std::string_view label) {
  constexpr std::size_t longest = 63;
  return !label.empty() && label.size() <= longest && label.front() != '-' && label.back() != '-' &&
         std::ranges::all_of(label, [](char c) { return is_letter(c) || is_digit(c) || c == '-'; });
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
                        return (is_letter(one) ? one | 0x20 : one) == other;
                      });
  if (begins) text.remove_prefix(scheme.size());
  return begins;
}

bool is_web_host(std::string_view host) {
  return is_loopback(parse_quad(host).address) || ServerAddressOrName{}.judge(host) == accepted;
}

// "server", "server:port"; an IPv6 address stands in brackets.
bool is_web_server(std::string_view authority) {
  bool known = false;
  if (authority.starts_with('[')) {
    const std::size_t end = std::min(authority.find(']'), authority.size() - 1);
    known = authority[end] == ']' && parse_ipv6(authority.substr(1, end - 1));
    authority.remove_prefix(end + 1);
  } else {
    const std::size_t end = std::min(authority.find(':'), authority.size());
    known = is_web_host(authority.substr(0, end));
    authority.remove_prefix(end);
  }
  if (!known || authority.empty()) return known;
  return authority.front() == ':' && Number{1, 65535}.judge(authority.substr(1)) == accepted;
}

// Link-local or unique-local.
bool on_lan(const in6_addr &address) {
  return IN6_IS_ADDR_LINKLOCAL(&address) || (address.s6_addr[0] & 0xfe) == 0xfc;
}

bool is_host(const in6_addr &address) {
  return !IN6_IS_ADDR_UNSPECIFIED(&address) && !IN6_IS_ADDR_LOOPBACK(&address) &&
         !IN6_IS_ADDR_MULTICAST(&address) && !IN6_IS_ADDR_V4MAPPED(&address);
}

int empty_or_bad(std::string_view value) {
  return value.empty() ? empty_value : bad_value;
}

} // namespace

int Ipv4Address::judge(std::string_view value) const {
  const Quad quad = parse_quad(value);
  if (const int code = quad_code(value, quad.fault); code != accepted) return code;
  if (of == Of::server) return is_unicast(quad.address) ? accepted : bad_host;
  if (!is_private(quad.address)) return bad_network;
  const std::uint32_t last = quad.address & 255U;
  return last == 0 || last == 255 ? bad_host : accepted;
}

RuleDescription Ipv4Address::describe() const {
  return described(of == Of::server ? "the IPv4 address of a host"
                                    : "a private IPv4 address that ends neither in 0 nor in 255",
                   quad_pattern);
}

int Ipv4Netmask::judge(std::string_view value) const {
  const Quad quad = parse_quad(value);
  if (const int code = quad_code(value, quad.fault); code != accepted) return code;
  return is_netmask(quad.address) ? accepted : bad_network;
}

RuleDescription Ipv4Netmask::describe() const {
  return described("an IPv4 netmask as 255.255.255.0", quad_pattern);
}

int ServerAddressOrName::judge(std::string_view value) const {
  const bool has_letter = std::ranges::any_of(value, is_letter);
  if (!has_letter) return Ipv4Address{Ipv4Address::Of::server}.judge(value);
  return is_host_name(value) ? accepted : bad_format;
}

RuleDescription ServerAddressOrName::describe() const {
  return described("an IPv4 address or a host name");
}

int WebUrl::judge(std::string_view value) const {
  if (value.empty()) return empty_value;
  if (value.size() > longest_url || !std::ranges::all_of(value, is_visible)) return bad_value;
  if (!take_scheme(value, "http://") && !take_scheme(value, "https://")) return bad_value;
  return is_web_server(value.substr(0, value.find_first_of("/?#"))) ? accepted : bad_value;
}

RuleDescription WebUrl::describe() const {
  return described("an http or https URL of at most " + std::to_string(longest_url) +
                       " characters, without a user",
                   "[Hh][Tt][Tt][Pp][Ss]?://[!-~]+");
}

int MacAddress::judge(std::string_view value) const {
  constexpr std::size_t length = 17;
  if (value.size() != length) return empty_or_bad(value);
  for (std::size_t at = 0; at < length; ++at) {
    const bool fits = at % 3 == 2 ? value[at] == ':' : hex_digit.holds(value[at]);
    if (!fits) return bad_value;
  }
  return accepted;
}

RuleDescription MacAddress::describe() const {
  return described("a MAC address as 00:1A:2B:3C:4D:5E", "([0-9A-Fa-f]{2}:){5}[0-9A-Fa-f]{2}");
}

int DottedQuad::judge(std::string_view value) const {
  return parse_quad(value).fault == QuadFault::none ? accepted : empty_or_bad(value);
}

RuleDescription DottedQuad::describe() const {
  return described("an IPv4 address", quad_pattern);
}

int RouteDestination::judge(std::string_view value) const {
  const Quad quad = parse_quad(value);
  if (quad.fault != QuadFault::none) return empty_or_bad(value);
  return quad.address == 0 || is_unicast(quad.address) ? accepted : bad_host;
}

RuleDescription RouteDestination::describe() const {
  return described("the IPv4 address of a network or a host, or 0.0.0.0 for everywhere", quad_pattern);
}

int RouteNetmask::judge(std::string_view value) const {
  const Quad quad = parse_quad(value);
  if (quad.fault != QuadFault::none) return empty_or_bad(value);
  return quad.address == 0 || ~quad.address == 0 || is_netmask(quad.address) ? accepted : bad_network;
}

RuleDescription RouteNetmask::describe() const {
  return described("an IPv4 netmask, 0.0.0.0 and 255.255.255.255 too", quad_pattern);
}

int AccessHost::judge(std::string_view value) const {
  if (const auto ipv6 = parse_ipv6(value)) {
    if (!is_host(*ipv6)) return bad_format;
    return on_lan(*ipv6) ? bad_network : accepted;
  }
  const int code = Ipv4Address{Ipv4Address::Of::server}.judge(value);
  if (code != accepted) return code == bad_host ? bad_format : code;
  return stored_lan().holds(parse_quad(value).address) ? bad_network : accepted;
}

RuleDescription AccessHost::describe() const {
  return described("an IPv4 or IPv6 address of a host outside the LAN");
}

int AnyServer::judge(std::string_view value) const {
  const auto ipv6 = parse_ipv6(value);
  return ipv6 && is_host(*ipv6) ? accepted : ServerAddressOrName{}.judge(value);
}

RuleDescription AnyServer::describe() const {
  return described("an IPv4 address, an IPv6 address or a host name");
}

int TestHost::judge(std::string_view value) const {
  const bool is_address = parse_ipv6(value) || DottedQuad{}.judge(value) == accepted;
  return is_address ? accepted : ServerAddressOrName{}.judge(value);
}

RuleDescription TestHost::describe() const {
  return AnyServer{}.describe();
}

} // namespace kova::host
