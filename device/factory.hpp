// What a new device holds, and what its daemons publish once it is booted.
#pragma once

#include "device/identity.hpp"
#include "platform/host/nvram_admin.hpp"

#include <string>
#include <utility>
#include <vector>

namespace kova::device {

std::vector<host::NvramEntry> factory_settings(const Identity &identity);
// Leaves of the configuration tree as (path, text).
std::vector<std::pair<std::string, std::string>> factory_tree();
// The run-time section right after a boot.
std::vector<host::NvramEntry> runtime_facts(const Identity &identity);

} // namespace kova::device
