// The LAN settings as the standard data model has them: each value is judged against the stored ones, and
// nothing is restarted before the apply parameter is set.
#include "platform/nvram.h"
#include "platform/webs.h"
#include "src/frame/rows.hpp"
#include "src/frame/shell.hpp"
#include "src/frame/trace.hpp"
#include "src/lan/lan_rules.hpp"

#include <kova/lan.h>

#include <cstdio>
#include <cstdlib>

namespace kova::lan {

namespace {

int refuse_lan(const char *message) {
  dbg_trace("[TR069][DHCP] Error, %s\n", message);
  return -1;
}

int dhcp_mode() {
  return load_switch("dhcpEnabled");
}
int refuse_without_dhcp() {
  return refuse_lan("DHCP Server is Disabled");
}
constexpr const char *outside_network = "IP address must be same network segment.";
constexpr const char *meets_own_address =
    "DHCPv4 Start IP or DHCPv4 End IP can't be the same as IPv4 Address.";

// 0 when the rule passes the address, else -1 with the rule's complaint.
int judge_address(Rule rule, const char *value) {
  switch (const int code = ask(rule, value)) {
  case -1:
    return refuse_lan("Please enter IP address");
  case -2:
    return refuse_lan("IP address value error");
  case -3:
    return refuse_lan("IP address format error");
  case -4:
    return refuse_lan("IP address is not Local Net IP address");
  case -5:
    return refuse_lan("Invalid IP Address.");
  default:
    return code < 0 ? -1 : 0;
  }
}

struct PoolBound {
  const char *key, *other_key;
  Rule rule;
  bool is_start;
};

int set_pool_bound(PoolBound bound, const char *value) {
  if (dhcp_mode() == 0) return refuse_without_dhcp();
  value = text_or_empty(value);
  const Text own = load("lan_ip"), mask = load("lan_netmask"), other = load(bound.other_key);
  if (judge_address(bound.rule, value) != 0) return -1;
  const char *start = bound.is_start ? value : other, *end = bound.is_start ? other : value;
  if (IPRangeCheck(own, mask, start, end) == 0) return refuse_lan(outside_network);
  if (webscheckIpStartEnd(start, end) == 0) return refuse_lan("Please enter a valid IP address range.");
  if (same_address(value, own)) return refuse_lan(meets_own_address);
  store(bound.key, value);
  return 0;
}

// A dotted quad in its four parts, as text.
struct Quad {
  char part[4][Text::size];
  bool parse(const char *address) {
    char beyond; // a fifth part is one too many
    return std::sscanf(address, "%255[^.].%255[^.].%255[^.].%255[^.]%c", part[0], part[1], part[2], part[3],
                       &beyond) == 4;
  }
  int last() const { return leading_number(part[3]); } // part of a judged address
};

// Moves a pool bound into the network of the new address; it keeps its last number.
void move_bound(const char *key, const Quad &address, const Quad &bound) {
  Text moved;
  std::snprintf(moved.chars, Text::size, "%.60s.%.60s.%.60s.%.60s", address.part[0], address.part[1],
                address.part[2], bound.part[3]);
  store(key, moved);
}

} // namespace

} // namespace kova::lan

using namespace kova;
using namespace kova::lan;

// clang-format off
CONSTANT(kovaGetTR069DHCPServerConfigurableValue, "true")
STORED(kovaGetDHCPServerEnableValue, "dhcpEnabled")
STORED(kovaGetManagementMinAddressValue, "dhcpStart")
STORED(kovaGetManagementMaxAddressValue, "dhcpEnd")
STORED(kovaGetManagementSubnetMaskValue, "lan_netmask")
STORED(kovaGetTR069LANSubnetMask, "lan_netmask")
STORED(kovaDHCPLeaseTimeValue, "dhcpLeaseTime")
STORED(kovaGetIPInterfaceIPAddressValue, "lan_ip")
STORED(kovaGetTR069LANIPAddress, "lan_ip")
// clang-format on

int kovaGetDHCPRelayValue(char *buf, unsigned int buflen) {
  return answer(equal(load("dhcpEnabled"), "2") ? "1" : "0", buf, buflen);
}

int kovaGetTR069LANMacAddress(char *buf, unsigned int buflen) {
  Text mac;
  if (tarn_getIfMac(getLanIfName(), mac.chars, Text::size) != 0) mac = {};
  return answer(mac, buf, buflen);
}

int kovasetDHCPServerEnableValue(const char *value) {
  value = text_or_empty(value);
  if (!passes(dhcp_mode_rule, value) || leading_number(value) == dhcp_relay) return -1;
  store("dhcpEnabled", value);
  return 0;
}

int kovasetManagementMinAddressValue(const char *value) {
  return set_pool_bound({"dhcpStart", "dhcpEnd", pool_start_rule, true}, value);
}

int kovasetManagementMaxAddressValue(const char *value) {
  return set_pool_bound({"dhcpEnd", "dhcpStart", pool_end_rule, false}, value);
}

int kovasetManagementSubnetMaskValue(const char *value) {
  if (dhcp_mode() == 0) return refuse_without_dhcp();
  value = text_or_empty(value);
  const Text own = load("lan_ip"), start = load("dhcpStart"), end = load("dhcpEnd");
  if (IPRangeCheck(own, value, start, end) == 0) {
    dbg_trace("[TR069][DHCP][SubnetMask] Error, %s\n", outside_network);
    return -1;
  }
  if (!passes(address_rule, own) || !passes(netmask_rule, value)) return -1;
  store("lan_netmask", value);
  return 0;
}

int kovasetDHCPLeaseTime(const char *value) {
  if (dhcp_mode() == 0) return refuse_without_dhcp();
  value = text_or_empty(value);
  if (!passes(lease_time_rule, value)) return -1;
  store("dhcpLeaseTime", value);
  return 0;
}

int kovasetIPInterfaceIPAddressValue(const char *value) {
  const int mode = dhcp_mode();
  const Text own = load("lan_ip"), mask = load("lan_netmask"), start = load("dhcpStart"),
             end = load("dhcpEnd");
  if (mode == 0) return refuse_without_dhcp();
  value = text_or_empty(value);
  if (judge_address(address_rule, value) != 0) return -1;

  // The rules go before the pool is looked at, and stay gone when the address is then refused.
  if (webscheckSameSubnet(value, mask, own) == 0) drop_rules_on_lan_addresses();

  Quad address, first, last;
  if (!address.parse(value)) return -1;
  const bool has_first = first.parse(start), has_last = last.parse(end);
  if (mode == dhcp_server &&
      ((has_first && address.last() == first.last()) || (has_last && address.last() == last.last())))
    return refuse_lan(meets_own_address);

  store("lan_ip", value);
  if (has_first) move_bound("dhcpStart", address, first);
  if (has_last) move_bound("dhcpEnd", address, last);
  return 0;
}

int kovasetDHCPApply(const char *value) {
  if (!equal(text_or_empty(value), "1")) return -1;
  constexpr int vpn_mode = 2;
  constexpr unsigned int pause_seconds = 3;
  constexpr const char *announce = "test_cpeevent call 'lan settings changed'";
  if (_getOperationMode() != vpn_mode) {
    run(announce);
    return 0;
  }
  run("test_cpeevent call 'ce_oper_mode stop'");
  pause_for(pause_seconds);
  run(announce);
  pause_for(pause_seconds);
  run("test_cpeevent call 'ce_oper_mode start'");
  return 0;
}

int kovaGetDHCPApply(char *, unsigned int) {
  return 0;
}
