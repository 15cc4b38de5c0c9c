// What a LAN setting may be, and what a change of the LAN network does to other settings.
#pragma once

#include "src/frame/settings.hpp"

namespace kova::lan {

inline constexpr int dhcp_server = 1, dhcp_relay = 2; // values of "dhcpEnabled"; 0 is off

inline constexpr Rule dhcp_mode_rule = RULE_LAN_DHCP_MODE, address_rule = RULE_LAN_ADDRESS,
                      netmask_rule = RULE_LAN_NETMASK, pool_start_rule = RULE_LAN_POOL_START,
                      pool_end_rule = RULE_LAN_POOL_END, lease_time_rule = RULE_LAN_LEASE_TIME,
                      dns_option_rule = RULE_LAN_DNS_OPTION, dns_server_rule = RULE_LAN_DNS_SERVER;

bool same_address(const char *a, const char *b);

// Switches off and empties the DMZ, port forwarding and port filter rules: they name addresses of the network
// that the LAN leaves.
void drop_rules_on_lan_addresses();

} // namespace kova::lan
