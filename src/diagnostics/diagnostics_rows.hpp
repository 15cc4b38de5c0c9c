// What the rows of the diagnostics tests say of their values.
#pragma once

#include "src/frame/conditions.hpp"

namespace kova::diagnostics {

inline constexpr Condition requested = {[](const char *value) { return equal(value, "Requested"); }, false,
                                        "Requested"};
// An empty DSCP counts as 0.
inline constexpr Condition digits = {is_digits, true};
inline constexpr Condition positive = {
    [](const char *value) { return is_digits(value) && leading_number(value) >= 1; }, false, nullptr, 1,
    INT_MAX};
inline constexpr Condition not_zero = {[](const char *value) { return leading_number(value) != 0; }, false,
                                       nullptr, 1, INT_MAX};

} // namespace kova::diagnostics
