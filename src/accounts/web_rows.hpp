// What the rows of the web interface say of their values.
#pragma once

#include "src/frame/conditions.hpp"

namespace kova::web {

inline constexpr Condition lock_seconds = number_within<300, 65535>;

} // namespace kova::web
