// The rules that judge the settings of the clock.
#pragma once

#include "src/frame/settings.hpp"

namespace kova::time {

inline constexpr Rule daylight_saving_rule = RULE_TIME_DAYLIGHT_SAVING,
                      ntp_server_rule = RULE_TIME_NTP_SERVER, zone_rule = RULE_TIME_ZONE;
inline constexpr int rules = 4;

} // namespace kova::time
