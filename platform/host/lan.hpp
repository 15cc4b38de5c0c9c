// The LAN as the settings have it.
#pragma once

#include "platform/host/ipv4.hpp"
#include "platform/host/nvram_sections.hpp"
#include "platform/keys.hpp"
#include "platform/nvram.h"

#include <cstdint>

namespace kova::host {

inline std::uint32_t stored_address(const char *key) {
  char text[32] = "";
  nvram_bufget_string(configuration_section, key, text, sizeof text);
  return parse_quad(text).address;
}

struct Lan {
  std::uint32_t router, mask;
  // Nothing is in the network of a mask that is none.
  bool holds(std::uint32_t address) const { return is_netmask(mask) && ((address ^ router) & mask) == 0; }
};

inline Lan stored_lan() {
  return {stored_address(key::lan_address), stored_address(key::lan_netmask)};
}

} // namespace kova::host
