// What the rows of the web interface say of their values.
#pragma once

#include "src/frame/conditions.hpp"

namespace kova::web {

inline constexpr Condition lock_seconds = number_within<300, 65535>;
inline constexpr Condition sound_password = {nullptr,
                                             false,
                                             nullptr,
                                             0,
                                             0, // judged by the policy of the accounts
                                             "at most 63 characters with a digit, an upper-case and a "
                                             "lower-case letter and a symbol, without \"%&'+,:;<>?\\"};

} // namespace kova::web
