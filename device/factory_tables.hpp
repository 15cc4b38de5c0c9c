// The rows of the factory settings and run-time facts, but those of the LAN, the WAN and WiFi, which stand in
// factory.cpp.
#pragma once

#include <span>

namespace kova::device {

struct Setting {
  const char *key, *value;
};

// One setting of each management instance: the key goes on after "TR_" and after "S_TR_".
struct InstanceSetting {
  const char *key, *primary, *secondary;
};

// In factory_tables.cpp: management, time and radio.
std::span<const Setting> identity_settings();
std::span<const InstanceSetting> management_settings();
std::span<const Setting> system_settings();       // time, web access and what the operator steers
std::span<const Setting> cell_selection_leaves(); // below /tarn/cell_selection/
std::span<const Setting> radio_facts();           // those that do not move

// In factory_services.cpp: what the router does for its users.
std::span<const Setting> firewall_settings(); // filters, security level, routes
std::span<const Setting> telephone_settings();
std::span<const Setting> access_settings(); // accounts, watchdog, spectrum access

} // namespace kova::device
