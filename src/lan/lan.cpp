// LAN address, DHCP server, pool and DNS servers as parameters of the set transaction.
#include "platform/webs.h"
#include "src/frame/rows.hpp"
#include "src/lan/lan_rules.hpp"
#include "src/transaction/park.hpp"

#include <kova/lan.h>

namespace kova::lan {

namespace {

// What a checker asks of a value besides its rule.
bool any(const char *) {
  return true;
}
bool the_only_mask(const char *value) {
  return equal(value, "255.255.255.0");
}

int check(const char *name, const char *value, bool (*allowed)(const char *), Rule rule, Place place) {
  if (is_empty(name) || is_empty(value) || !allowed(value) || !passes(rule, value)) return -1;
  return park(place, name, value);
}

int check_optional_server(const char *name, const char *value, Place place) {
  if (is_empty(name) || value == nullptr) return -1;
  if (*value != '\0' && !passes(dns_server_rule, value)) return -1;
  return park(place, name, value);
}

// The checkers have judged: a setter only stores, and makes the DHCP server read its settings again.
int set(const char *key, const char *value) {
  store(key, value);
  mrhd_restart_dhcp_server();
  return 0;
}

int set_required(const char *key, const char *value) {
  return is_empty(value) ? -1 : set(key, value);
}

} // namespace

bool same_address(const char *a, const char *b) {
  return websIP2Num(a) == websIP2Num(b);
}

void drop_rules_on_lan_addresses() {
  store("DMZEnable", "0");
  store("DMZAddress", "");
  store("PortForwardEnable", "0");
  store("PortForwardRules", "");
  store("IPPortFilterEnable", "0");
  store("IPPortFilterRules", "");
  store("IPPortFilterWhiteRules", "");
}

} // namespace kova::lan

using namespace kova;
using namespace kova::lan;

#define REQUIRED(getter, setter, checker, key, place, allowed, rule)                                         \
  STORED(getter, key)                                                                                        \
  int checker(const char *name, const char *value) {                                                         \
    return check(name, value, allowed, rule, place);                                                         \
  }                                                                                                          \
  int setter(const char *value) {                                                                            \
    return set_required(key, value);                                                                         \
  }
#define OPTIONAL_SERVER(getter, setter, checker, key, place)                                                 \
  STORED(getter, key)                                                                                        \
  int checker(const char *name, const char *value) {                                                         \
    return check_optional_server(name, value, place);                                                        \
  }                                                                                                          \
  int setter(const char *value) {                                                                            \
    return set(key, text_or_empty(value));                                                                   \
  }

#define LAN(slot) (Place{gPVCL.lanTouched, gPVCL.slot})
#define DNS(slot) (Place{gPVCL.dnsTouched, gPVCL.slot})
// clang-format off
//              getter                    setter                    checker                   key              place                  value besides rule  rule
REQUIRED(       getTR069LANIPAddress,     setTR069LANIPAddress,     chkTR069LANIPAddress,     "lan_ip",        LAN(lanIpAddress),     any,                address_rule)
REQUIRED(       getTR069LANSubnetMask,    setTR069LANSubnetMask,    chkTR069LANSubnetMask,    "lan_netmask",   LAN(lanSubnetMask),    the_only_mask,      netmask_rule)
REQUIRED(       getTR069DHCPServerEnable, setTR069DHCPServerEnable, chkTR069DHCPServerEnable, "dhcpEnabled",   LAN(dhcpServerEnable), is_zero_or_one,     dhcp_mode_rule)
REQUIRED(       getTR069DHCPPoolStartIP,  setTR069DHCPPoolStartIP,  chkTR069DHCPPoolStartIP,  "dhcpStart",     LAN(dhcpPoolStart),    any,                pool_start_rule)
REQUIRED(       getTR069DHCPPoolEndIP,    setTR069DHCPPoolEndIP,    chkTR069DHCPPoolEndIP,    "dhcpEnd",       LAN(dhcpPoolEnd),      any,                pool_end_rule)
REQUIRED(       getTR069Dns1,             setTR069Dns1,             chkTR069Dns1,             "primaryDNS",    DNS(dns1),             any,                dns_server_rule)
OPTIONAL_SERVER(getTR069Dns2,             setTR069Dns2,             chkTR069Dns2,             "secondaryDNS",  DNS(dns2))
OPTIONAL_SERVER(getTR069Dns3,             setTR069Dns3,             chkTR069Dns3,             "thirdlyDNS",    DNS(dns3))
STORED(getTR069DHCPLeaseTime, "dhcpLeaseTime")
// clang-format on

// The data model's option is the inverse of the stored one.
int getTR069DnsOption(char *buf, unsigned int buflen) {
  return answer(equal(load("dnsOption"), "0") ? "1" : "0", buf, buflen);
}
int chkTR069DnsOption(const char *name, const char *value) {
  return check(name, value, is_zero_or_one, dns_option_rule, DNS(dnsOption));
}
int setTR069DnsOption(const char *value) {
  if (is_empty(value)) return -1;
  return set("dnsOption", equal(value, "0") ? "1" : "0");
}

int setTR069DHCPLeaseTime(const char *value) {
  value = text_or_empty(value);
  if (!passes(lease_time_rule, value)) return -1;
  return set("dhcpLeaseTime", value);
}
