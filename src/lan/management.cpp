// The LAN settings as the standard data model has them.
#include "platform/keys.hpp"
#include "platform/nvram.h"
#include "platform/webs.h"
#include "src/frame/rows.hpp"
#include "src/frame/set.hpp"
#include "src/frame/shell.hpp"
#include "src/frame/trace.hpp"
#include "src/lan/lan_rules.hpp"

#include <kova/lan.h>

#include <cstdio>
#include <cstring>

namespace kova::lan {

namespace {

int refuse_lan(const char *message) {
  dbg_trace("[TR069][DHCP] Error, %s\n", message);
  return -1;
}

int stored_mode() {
  return load_switch(key::dhcp_mode);
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

int answer_whether_relay(const char *key, char *buf, unsigned int buflen) {
  return answer(equal(load(key), "2") ? "1" : "0", buf, buflen);
}
// Relay cannot be set.
int set_mode(const char *key, const char *value, Rule rule) {
  value = text_or_empty(value);
  if (!passes(rule, value) || leading_number(value) == dhcp_relay) return -1;
  store(key, value);
  return 0;
}

int set_lease(const char *key, const char *value, Rule rule) {
  return stored_mode() == 0 ? refuse_without_dhcp() : set_by_rule(key, value, rule);
}

int set_mask(const char *key, const char *value, Rule rule) {
  if (stored_mode() == 0) return refuse_without_dhcp();
  value = text_or_empty(value);
  const Text own = load(key::lan_address), start = load(key::dhcp_start), end = load(key::dhcp_end);
  if (IPRangeCheck(own, value, start, end) == 0) return refuse_lan(outside_network);
  return passes(RULE_LAN_ADDRESS, own) ? set_by_rule(key, value, rule) : -1;
}

int set_bound(const char *key, const char *value, Rule rule) {
  if (stored_mode() == 0) return refuse_without_dhcp();
  value = text_or_empty(value);
  const bool is_start = rule == RULE_LAN_POOL_START;
  const Text own = load(key::lan_address), mask = load(key::lan_netmask),
             other = load(is_start ? key::dhcp_end : key::dhcp_start);
  if (judge_address(rule, value) != 0) return -1;
  const char *start = is_start ? value : other, *end = is_start ? other : value;
  if (IPRangeCheck(own, mask, start, end) == 0) return refuse_lan(outside_network);
  if (webscheckIpStartEnd(start, end) == 0) return refuse_lan("Please enter a valid IP address range.");
  if (same_address(value, own)) return refuse_lan(meets_own_address);
  store(key, value);
  return 0;
}

// A dotted quad in its four parts, as places in its text.
struct Quad {
  const char *part[4];
  int length[4];

  bool parse(const char *address) {
    for (int i = 0; i < 4; ++i) {
      const std::size_t found = std::strcspn(address, ".");
      if (found == 0 || found >= Text::size) return false;
      part[i] = address;
      length[i] = static_cast<int>(found);
      address += found;
      if (i < 3 && *address++ == '\0') return false;
    }
    return *address == '\0'; // a fifth part is one too many
  }
  int last() const { return leading_number(part[3]); } // a number: the address was judged before
};

// Moves a pool bound into the network of the new address; it keeps its last number.
void move_bound(const char *key, const Quad &address, const Quad &bound) {
  const auto kept = [](const Quad &quad, int i) {
    constexpr int longest = 60;
    return quad.length[i] < longest ? quad.length[i] : longest;
  };
  Text moved;
  std::snprintf(moved.chars, Text::size, "%.*s.%.*s.%.*s.%.*s", kept(address, 0), address.part[0],
                kept(address, 1), address.part[1], kept(address, 2), address.part[2], kept(bound, 3),
                bound.part[3]);
  store(key, moved);
}

int move_lan(const char *key, const char *value, Rule rule) {
  const int mode = stored_mode();
  const Text own = load(key), mask = load(key::lan_netmask), start = load(key::dhcp_start),
             end = load(key::dhcp_end);
  if (mode == 0) return refuse_without_dhcp();
  value = text_or_empty(value);
  if (judge_address(rule, value) != 0) return -1;

  // The rules go before the pool is looked at, and stay gone when the address is then refused.
  if (webscheckSameSubnet(value, mask, own) == 0) drop_rules_on_lan_addresses();

  Quad address, first, last;
  if (!address.parse(value)) return -1;
  const bool has_first = first.parse(start), has_last = last.parse(end);
  if (mode == dhcp_server &&
      ((has_first && address.last() == first.last()) || (has_last && address.last() == last.last())))
    return refuse_lan(meets_own_address);

  store(key, value);
  if (has_first) move_bound(key::dhcp_start, address, first);
  if (has_last) move_bound(key::dhcp_end, address, last);
  return 0;
}

int answer_mac(const char *ifname, char *buf, unsigned int buflen) {
  Text mac;
  if (tarn_getIfMac(ifname, mac.chars, Text::size) != 0) mac = {};
  return answer(mac, buf, buflen);
}

// In the VPN mode the network is stopped around the announcement.
int announce() {
  constexpr int vpn_mode = 2;
  constexpr unsigned int pause_seconds = 3;
  constexpr const char *announcement = "test_cpeevent call 'lan settings changed'";
  if (_getOperationMode() != vpn_mode) {
    run(announcement);
    return 0;
  }
  run("test_cpeevent call 'ce_oper_mode stop'");
  pause_for(pause_seconds);
  run(announcement);
  pause_for(pause_seconds);
  run("test_cpeevent call 'ce_oper_mode start'");
  return 0;
}

} // namespace

} // namespace kova::lan

using namespace kova;
using namespace kova::lan;

#include "src/lan/management.def"
