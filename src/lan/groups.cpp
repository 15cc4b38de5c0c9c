// WiFi, the LAN and its DNS servers: what goes together.
#include "src/lan/groups.hpp"

#include "platform/keys.hpp"
#include "platform/webs.h"
#include "src/frame/trace.hpp"
#include "src/lan/lan_rules.hpp"

#include <arpa/inet.h>

#include <cstring>
#include <initializer_list>

namespace kova::lan {

namespace {

using transaction::FaultNames;
using transaction::Group;
using transaction::GroupedValue;
using transaction::List;

void add_request_names(FaultNames &faults, std::initializer_list<const PendingValue *> slots) {
  for (const PendingValue *slot : slots)
    if (transaction::set_by_request(*slot)) faults.add(slot->name);
}

// LAN and DNS names count as taken from the store when they hold "Local" anywhere.
void add_names_without_local(FaultNames &faults, const Group &group) {
  group.each_slot([&faults](const PendingValue &slot) {
    const char *name = pvcl_slot_name(&slot);
    if (std::strstr(name, "Local") == nullptr) faults.add(name);
  });
}

bool judge_wifi(const Group &, FaultNames &faults) {
  const char *mode = pvcl_slot_value(&gPVCL.wifiMode), *rate = pvcl_slot_value(&gPVCL.wifiRate),
             *bandwidth = pvcl_slot_value(&gPVCL.wifiBandwidth);
  if (CheckRFModeAndBW(mode, bandwidth) == -1) {
    dbg_trace("[TR069]set WiFi Error,rfmode(%s) or BandWidth(%s) value error.\n", mode, bandwidth);
    add_request_names(faults, {&gPVCL.wifiMode, &gPVCL.wifiBandwidth});
    return false;
  }
  if (CheckRFModeAndRate(mode, rate) < 0) {
    dbg_trace("[TR069]set WiFi Error,rfmode(%s) or Rate(%s) value error.\n", mode, rate);
    add_request_names(faults, {&gPVCL.wifiMode, &gPVCL.wifiRate});
    return false;
  }
  return true;
}

bool judge_lan(const Group &group, FaultNames &faults) {
  const char *address = pvcl_slot_value(&gPVCL.lanIpAddress), *mask = pvcl_slot_value(&gPVCL.lanSubnetMask),
             *dhcp = pvcl_slot_value(&gPVCL.dhcpServerEnable), *start = pvcl_slot_value(&gPVCL.dhcpPoolStart),
             *end = pvcl_slot_value(&gPVCL.dhcpPoolEnd);

  // Relay cannot be set by a request. With the server off the addresses are not looked at.
  const int mode = leading_number(dhcp); // 0, off, for a text without a number
  const bool passes = mode == dhcp_server ? IPRangeCheck(address, mask, start, end) != 0 &&
                                                webscheckIpStartEnd(start, end) != 0 &&
                                                !same_address(address, start) && !same_address(address, end)
                                          : mode != dhcp_relay;
  if (!passes) {
    dbg_trace("[TR069]set Lan Error,lanip(%s/%s) DHCP(%s) pool(%s-%s) value error.\n", address, mask, dhcp,
              start, end);
    add_names_without_local(faults, group);
    return false;
  }

  const Text stored = load(key::lan_address);
  const bool changes = !equal(stored, address);
  if (changes) store(runtime("dhcp_ip_changed"), "1");
  if (webscheckSameSubnet(address, mask, stored) != 0) {
    store(runtime("different_subnets"), "0");
    store(runtime("dhcp_ipaddr_change"), changes ? "1" : "0");
  } else {
    drop_rules_on_lan_addresses();
    store(runtime("different_subnets"), "1");
  }
  return true;
}

bool judge_dns(const Group &group, FaultNames &faults) {
  const char *first = pvcl_slot_value(&gPVCL.dns1), *second = pvcl_slot_value(&gPVCL.dns2),
             *third = pvcl_slot_value(&gPVCL.dns3);
  const in_addr_t d1 = inet_addr(first), d2 = inet_addr(second), d3 = inet_addr(third);
  // An unset second and third server may be "the same", but not an unset first and second.
  if (d1 == d2 || (d1 == d3 && d1 != INADDR_NONE) || (d2 == d3 && d2 != INADDR_NONE)) {
    dbg_trace("[TR069]set Lan DNS Error,dnsoption(%s) dns1(%s) dns2(%s) dns3(%s) value error.\n",
              pvcl_slot_value(&gPVCL.dnsOption), first, second, third);
    add_names_without_local(faults, group);
    return false;
  }
  return true;
}

// clang-format off
//   slot                    label                      key
constexpr GroupedValue wifi_values[] = {
    {&List::wifiMode,          "Local WiFi Mode",         key::wifi_mode},
    {&List::wifiRate,          "Local WiFi rate",         key::wifi_rate},
    {&List::wifiBandwidth,     "Local WiFi Bandwidth",    key::wifi_bandwidth}};
constexpr GroupedValue lan_values[] = {
    {&List::lanIpAddress,      "Local Lan ip",            key::lan_address},
    {&List::lanSubnetMask,     "Local Lan subnetmask",    key::lan_netmask},
    {&List::dhcpServerEnable,  "Local DHCP enable",       key::dhcp_mode},
    {&List::dhcpPoolStart,     "Local DHCP poolstartip",  key::dhcp_start},
    {&List::dhcpPoolEnd,       "Local DHCP poolendip",    key::dhcp_end}};
constexpr GroupedValue dns_values[] = {
    {&List::dnsOption,         "Local DNS dnsOption",     key::dns_option},
    {&List::dns1,              "Local DNS primaryDNS",    key::dns_1},
    {&List::dns2,              "Local DNS secondaryDNS",  key::dns_2},
    {&List::dns3,              "Local DNS thirdlyDNS",    key::dns_3}};
// clang-format on

} // namespace

constinit const Group wifi_group = {&List::wifiTouched, Section::config, wifi_values, judge_wifi};
constinit const Group lan_group = {&List::lanTouched, Section::config, lan_values, judge_lan};
constinit const Group dns_group = {&List::dnsTouched, Section::config, dns_values, judge_dns};

} // namespace kova::lan
