// The rows of the factory settings and run-time facts of management, time and radio.
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

std::span<const Setting> identity_settings();
std::span<const InstanceSetting> management_settings();
std::span<const Setting> service_settings();      // time, web access and what the operator steers
std::span<const Setting> cell_selection_leaves(); // below /tarn/cell_selection/
std::span<const Setting> radio_facts();           // those that do not move

} // namespace kova::device
