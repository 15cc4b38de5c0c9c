// What the rows of the telephone line say of their values.
#pragma once

#include "src/frame/conditions.hpp"

namespace kova::voice {

inline constexpr Condition gains = {nullptr, true, "0 -20 -40 -60 -80 -100"}; // judged where they are stored

} // namespace kova::voice
