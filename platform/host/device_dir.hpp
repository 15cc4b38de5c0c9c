// Where the virtual device of this process lives.
#pragma once

#include <filesystem>

#pragma GCC visibility push(default)
namespace kova::host {

// $KOVA_DEVICE when it is set and not empty, else "kova" under $XDG_STATE_HOME or ~/.local/state. Absolute; need not
// exist. Read at every call, so that a tool can choose its device before it uses the stores.
std::filesystem::path device_dir();

// Both stores lie in "store" below the device directory.
std::filesystem::path store_dir();
// Creates the directory as far as it is missing. 0, or the system error that forbids writing: a device directory
// without write permission is a device to look at only, whatever the files in it allow.
int prepare_store_dir(const std::filesystem::path &store);

} // namespace kova::host
#pragma GCC visibility pop
