// The groups of WiFi, the LAN and its DNS servers.
#pragma once

#include "src/transaction/group.hpp"

namespace kova::lan {

extern const transaction::Group wifi_group, lan_group, dns_group;

} // namespace kova::lan
