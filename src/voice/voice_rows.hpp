// What the rows of the telephone line say of their values.
#pragma once

#include "src/frame/conditions.hpp"

namespace kova::voice {

// Decibels; a text without a number is 0.
inline constexpr Condition gains = {[](const char *value) {
                                      const int gain = leading_number(value);
                                      return gain <= 0 && gain >= -100 && gain % 20 == 0;
                                    },
                                    true, "0 -20 -40 -60 -80 -100"};

} // namespace kova::voice
