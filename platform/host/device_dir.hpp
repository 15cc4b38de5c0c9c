// Where the virtual device of this process lives.
#pragma once

#include <filesystem>

namespace kova::host {

// $KOVA_DEVICE when it is set and not empty, else "kova" under $XDG_STATE_HOME or ~/.local/state. Absolute; need not
// exist. Read at every call, so that a tool can choose its device before it uses the stores.
std::filesystem::path device_dir();

} // namespace kova::host
