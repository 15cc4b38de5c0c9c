// The client that manages the device: it must not shut itself out.
#pragma once

#include "src/frame/settings.hpp"

namespace kova::security {

struct MacText {
  char chars[18] = {}; // "00:1A:2B:3C:4D:5E", or empty
};

// The MAC address of the LAN client whose address is stored under key::managing_client; empty when no client has it.
MacText managing_client(Section section);

} // namespace kova::security
