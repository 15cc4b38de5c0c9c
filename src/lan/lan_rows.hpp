// What the rows of the LAN say of their values.
#pragma once

#include "src/frame/conditions.hpp"

namespace kova::lan {

inline constexpr Condition the_only_mask = {[](const char *value) { return equal(value, "255.255.255.0"); },
                                            false, "255.255.255.0"};

} // namespace kova::lan
