// The values of the operation-mode settings and of an APN profile's bearer use.
#pragma once

#include "platform/webs.h"
#include "src/frame/settings.hpp"

#include <kova/wan.h>

namespace kova::wan {

inline constexpr int nat_mode = 0, router_mode = 1, vpn_mode = 2, bridge_mode = 3; // "oper_mode"
inline constexpr int vpn_l2tp = 0, vpn_gre = 1;                                    // "vpn_type"
inline constexpr int gre_layer_2 = 1;                                              // "gre_type"
inline constexpr int data_bearer = 0, no_bearer = 3;                               // "apply_to"

} // namespace kova::wan
