// What the settings of the LAN, judged together or one by one, have in common.
#pragma once

namespace kova::lan {

inline constexpr int dhcp_server = 1, dhcp_relay = 2; // of key::dhcp_mode; 0 is off

bool same_address(const char *a, const char *b);

// Switches off and empties the DMZ, port forwarding and port filter rules: they name addresses of the network
// that the LAN leaves.
void drop_rules_on_lan_addresses();

} // namespace kova::lan
