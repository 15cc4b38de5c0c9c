#include "platform/host/address_kinds.hpp"

#include "platform/host/characters.hpp"
#include "platform/host/ipv4.hpp"
#include "platform/host/ipv6.hpp"
#include "platform/host/lan.hpp"

namespace kova::host {

namespace {

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

int MacAddress::judge(std::string_view value) const {
  constexpr std::size_t length = 17;
  if (value.size() != length) return empty_or_bad(value);
  for (std::size_t at = 0; at < length; ++at) {
    const bool fits = at % 3 == 2 ? value[at] == ':' : is_one_of("0123456789abcdefABCDEF", value[at]);
    if (!fits) return bad_value;
  }
  return accepted;
}

int DottedQuad::judge(std::string_view value) const {
  return parse_quad(value).fault == QuadFault::none ? accepted : empty_or_bad(value);
}

int RouteDestination::judge(std::string_view value) const {
  const Quad quad = parse_quad(value);
  if (quad.fault != QuadFault::none) return empty_or_bad(value);
  return quad.address == 0 || is_unicast(quad.address) ? accepted : bad_host;
}

int RouteNetmask::judge(std::string_view value) const {
  const Quad quad = parse_quad(value);
  if (quad.fault != QuadFault::none) return empty_or_bad(value);
  return quad.address == 0 || ~quad.address == 0 || is_netmask(quad.address) ? accepted : bad_network;
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

int AnyServer::judge(std::string_view value) const {
  const auto ipv6 = parse_ipv6(value);
  return ipv6 && is_host(*ipv6) ? accepted : ServerAddressOrName{}.judge(value);
}

} // namespace kova::host
