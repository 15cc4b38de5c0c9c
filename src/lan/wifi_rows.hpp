// What the rows of WiFi say of their values.
#pragma once

#include "src/frame/conditions.hpp"

namespace kova::wifi {

inline constexpr Condition rate_index = {
    [](const char *value) { return is_digits(value) && leading_number(value) <= 12; }, true, nullptr, 0, 12};
inline constexpr Condition security_modes = {nullptr, false,
                                             "OPEN WPA WPA2 WPAWPA2"}; // judged with their ciphers

} // namespace kova::wifi
