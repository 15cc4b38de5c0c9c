// What the rows of the clock say of their values.
#pragma once

#include "src/frame/conditions.hpp"

namespace kova::time {

inline constexpr Condition utc_offset = {
    nullptr,
    false,
    nullptr,
    0,
    0,
    "an offset from UTC as +05:45", // judged with the zone that it stands for
    "[+\\-](0[0-9]|1[0-3]):[0-5][0-9]"};

} // namespace kova::time
