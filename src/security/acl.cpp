// The access-control list: which hosts may reach the device's management services.
#include "src/security/acl.hpp"

#include "platform/keys.hpp"
#include "platform/webs.h"
#include "src/frame/trace.hpp"
#include "src/lists/fields.hpp"

#include <arpa/inet.h>
#include <kova/security.h>

#include <cstdio>

namespace kova::security {

namespace {

using namespace lists;

constexpr const char *list_key = "AclRules";

enum Field { service_field, start_field, end_field, interface_field, field_count };
using AclRow = Fields<field_count, 64>;

bool is_ipv6(const char *text) {
  in6_addr address;
  return inet_pton(AF_INET6, text, &address) == 1;
}

// A host on the WAN side must not have an address of the gateway's network, one on the LAN side must.
bool judge_address(const AclRow &row, bool is_start) {
  constexpr int empty = -1, in_gateway_network = -4;
  const int code = is_start ? ask(RULE_ACL_START, row[start_field]) : ask(RULE_ACL_END, row[end_field]);
  if (is_start && code == empty) return refused("Please input start IP address.");
  if (code == -2 || code == -3)
    return refused(is_start ? "Invalid start IP address." : "Invalid end IP address.");
  const bool wan = leading_number(row[interface_field]) == 0; // its range is judged: 0 WAN, 1 LAN
  if (wan && code == in_gateway_network)
    return refused("IP address can't be the same with gateway address network segment.");
  if (!wan && code != in_gateway_network)
    return refused("IP address must be the same with gateway address network segment.");
  return true;
}

bool judge_fields(const AclRow &row) {
  const char *interface = row[interface_field], *service = row[service_field];
  if (is_empty(interface) || webscheckRange(interface, 0, 1) == 0) return false;
  if (is_empty(service) || (webscheckRange(service, 4, 4) == 0 && webscheckRange(service, 7, 8) == 0))
    return false;
  if (!judge_address(row, true)) return false;
  const bool single_host = !is_empty(row[start_field]) && is_empty(row[end_field]);
  return single_host || judge_address(row, false);
}

// ---- The IPv6 path

// Compares two addresses as four words: '<', '=', '>', or '?' when one is no IPv6 address.
char compare_ipv6(const char *a, const char *b) {
  in6_addr first, second;
  if (inet_pton(AF_INET6, a, &first) != 1 || inet_pton(AF_INET6, b, &second) != 1) return '?';
  const int order = std::memcmp(&first, &second, sizeof first); // network order: most significant byte first
  return order < 0 ? '<' : order > 0 ? '>' : '=';
}

struct Ipv6Text {
  char chars[INET6_ADDRSTRLEN] = {};
  // Takes an address in its canonical form.
  bool take(const char *address) {
    in6_addr parsed;
    return inet_pton(AF_INET6, address, &parsed) == 1 &&
           inet_ntop(AF_INET6, &parsed, chars, sizeof chars) != nullptr;
  }
};

// The end of a range, empty when it is a single host. False for a range that is none.
bool normalise_end(const Ipv6Text &start, const char *end, Ipv6Text &normal) {
  if (is_empty(end)) return true;
  const char order = normal.take(end) ? compare_ipv6(start.chars, normal.chars) : '?';
  if (order == '=') normal = {};
  return order == '<' || order == '=';
}

bool append_ipv6_row(const char *interface, int service, const Ipv6Text &start, const Ipv6Text &end) {
  const OwnedText list = load_text(list_key);
  if (*list != '\0' && !(is_ipv6(start.chars) && (*end.chars == '\0' || is_ipv6(end.chars)))) return false;
  char row[256];
  std::snprintf(row, sizeof row, "%d,%s,%s,%.63s", service, start.chars, end.chars, interface);
  const std::size_t room = std::strlen(list) + sizeof row + 1;
  const OwnedText longer(static_cast<char *>(std::calloc(1, room)));
  if (longer.writable() == nullptr) return false;
  std::snprintf(longer.writable(), room, "%s%s%s", static_cast<const char *>(list), *list != '\0' ? ";" : "",
                row);
  store(list_key, longer);
  return true;
}

} // namespace

// clang-format off
constexpr List access_list = {"ACL", "ACLSettings", list_key, nullptr, "4, ,,0", {first_255, first_255, first_255},
                              {keeps_255, keeps_63}, {key::acl_enable}, checkACLSettingsRulesAllParam};
// clang-format on

} // namespace kova::security

using namespace kova;
using namespace kova::security;

int checkACLSettingsRulesAllParam(const char *row, int position) {
  const AclRow fields(row);
  if (!judge_fields(fields)) return -1;
  const char *start = fields[start_field], *end = fields[end_field];
  if (!is_ipv6(start)) {
    if (check_ipv4_start_end(start, *end != '\0' ? end : start) == 0) return 0;
    return refuse("ARK_IPV4_RANG_FAIL");
  }
  if (check_ipv6_start_end(start, end) != 0) return refuse("ARK_IPV6_RANG_FAIL");
  char marker[16] = {};
  if (position != 0) std::snprintf(marker, sizeof marker, "%d", position);
  if (_aclConfigIpv6(marker, fields[interface_field], fields[service_field], start, end) == 1) return 0;
  return refuse("ACL config failed.");
}

int _aclConfigIpv6(const char *marker, const char *interface, const char *serviceType, const char *startIP,
                   const char *endIP) {
  constexpr int done = 1, refused = 0, most_rows_before = 15;
  marker = text_or_empty(marker);
  if (*marker == '\0' && firewall_getRuleNums(load_text(list_key)) > most_rows_before) return refused;
  const int service = leading_number(text_or_empty(serviceType));
  if (service != 4 && service != 7 && service != 8) {
    dbg_trace("[TR069][Error_%s]:wrong proto_num.\n", __func__);
    return refused;
  }
  Ipv6Text start, end;
  if (!start.take(text_or_empty(startIP))) return refused;
  if (!normalise_end(start, endIP, end)) {
    dbg_trace("[TR069][Error_%s]:invalid range.", __func__);
    return refused;
  }
  return append_ipv6_row(text_or_empty(interface), service, start, end) ? done : refused;
}
