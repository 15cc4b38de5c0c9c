// The rules that judge the settings of the clock.
#pragma once

#include "src/frame/settings.hpp"

namespace kova::time {

inline constexpr int rules = 4; // the platform's rule group for time
inline constexpr Rule daylight_saving_rule = {rules, 8}, ntp_server_rule = {rules, 10},
                      zone_rule = {rules, 17};

} // namespace kova::time
