// What a LAN setting may be, and what a change of the LAN network does to other settings.
#pragma once

#include "src/frame/settings.hpp"

namespace kova::lan {

inline constexpr int dhcp_server = 1, dhcp_relay = 2; // values of "dhcpEnabled"; 0 is off

inline constexpr int rules = 3; // the platform's rule group for LAN and DHCP
inline constexpr Rule dhcp_mode_rule = {rules, 8}, address_rule = {rules, 9}, netmask_rule = {rules, 10},
                      pool_start_rule = {rules, 11}, pool_end_rule = {rules, 12},
                      lease_time_rule = {rules, 21}, dns_option_rule = {rules, 27},
                      dns_server_rule = {rules, 28};

bool same_address(const char *a, const char *b);

// Switches off and empties the DMZ, port forwarding and port filter rules: they name addresses of the network
// that the LAN leaves.
void drop_rules_on_lan_addresses();

} // namespace kova::lan
