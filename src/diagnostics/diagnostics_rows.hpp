// What the rows of the diagnostics tests say of their values.
#pragma once

#include "src/frame/conditions.hpp"

#include <initializer_list>

namespace kova::diagnostics {

inline constexpr Condition requested = {[](const char *value) { return equal(value, "Requested"); }, false,
                                        "Requested"};
// An empty DSCP counts as 0.
inline constexpr Condition digits = {is_digits, true};
inline constexpr Condition positive = {
    [](const char *value) { return is_digits(value) && leading_number(value) >= 1; }, false, nullptr, 1,
    LONG_MAX};
inline constexpr Condition not_zero = {[](const char *value) { return leading_number(value) != 0; }, false,
                                       nullptr, 1, LONG_MAX};

// What a test may be sent through; empty is any.
inline constexpr Condition interface_name = {
    [](const char *value) {
      for (const char *known :
           {"InternetGatewayDevice.WANDevice.1.WANConnectionDevice.1.WANIPConnection.1",
            "InternetGatewayDevice.LANDevice.1.LANHostConfigManagement.IPInterface.1", "lo", ""})
        if (equal(value, known)) return true;
      return false;
    },
    true,
    "InternetGatewayDevice.WANDevice.1.WANConnectionDevice.1.WANIPConnection.1 "
    "InternetGatewayDevice.LANDevice.1.LANHostConfigManagement.IPInterface.1 lo"};

} // namespace kova::diagnostics
