// What the LTE daemon publishes about the data connection.
#pragma once

#include "platform/keys.hpp"
#include "src/frame/settings.hpp"

namespace kova {

inline bool lte_data_is_connected() {
  constexpr int connected = 3;
  return load_number(runtime(key::data_state)) == connected;
}

} // namespace kova
