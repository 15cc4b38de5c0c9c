// What the rows of the DMZ say of their values.
#pragma once

#include "src/frame/conditions.hpp"

namespace kova::wan {

inline constexpr Condition true_or_false = {
    [](const char *value) { return equal(value, "true") || equal(value, "false"); }, false, "true false"};

} // namespace kova::wan
