// The combined rules of WiFi, LAN and DNS.
#include "platform/webs.h"
#include "src/frame/trace.hpp"
#include "src/lan/lan_rules.hpp"
#include "src/transaction/groups.hpp"

#include <arpa/inet.h>

#include <cstdlib>
#include <cstring>
#include <initializer_list>

namespace kova::transaction {

namespace {

void add_request_names(FaultNames &faults, std::initializer_list<const PendingValue *> slots) {
  for (const PendingValue *slot : slots)
    if (set_by_request(*slot)) faults.add(slot->name);
}

// LAN and DNS names count as taken from the store when they hold "Local" anywhere.
void add_names_without_local(FaultNames &faults, const Group &group) {
  for (std::size_t i = 0; i < group.slot_count; ++i) {
    const char *name = pvcl_slot_name(&group.slot(i));
    if (std::strstr(name, "Local") == nullptr) faults.add(name);
  }
}

} // namespace

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
  const int mode = leading_number(dhcp); // a text that is no number is not 1 or 2
  const bool passes = mode == lan::dhcp_server
                          ? IPRangeCheck(address, mask, start, end) != 0 &&
                                webscheckIpStartEnd(start, end) != 0 && !lan::same_address(address, start) &&
                                !lan::same_address(address, end)
                          : mode != lan::dhcp_relay;
  if (!passes) {
    dbg_trace("[TR069]set Lan Error,lanip(%s/%s) DHCP(%s) pool(%s-%s) value error.\n", address, mask, dhcp,
              start, end);
    add_names_without_local(faults, group);
    return false;
  }

  const Text stored = load("lan_ip");
  const bool changes = !equal(stored, address);
  if (changes) store(runtime("dhcp_ip_changed"), "1");
  if (webscheckSameSubnet(address, mask, stored) != 0) {
    store(runtime("different_subnets"), "0");
    store(runtime("dhcp_ipaddr_change"), changes ? "1" : "0");
  } else {
    lan::drop_rules_on_lan_addresses();
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

} // namespace kova::transaction
