// Where the virtual device of this process lives.
#pragma once

#include <sys/types.h>

#include <filesystem>

#pragma GCC visibility push(default)
namespace kova::host {

// A device belongs to its user alone, whatever the umask.
constexpr mode_t private_dir = 0700, private_file = 0600;

// $KOVA_DEVICE when it is set and not empty, else "kova" under $XDG_STATE_HOME or ~/.local/state. Absolute;
// need not exist. Read at every call, so that a tool can choose its device before it uses the stores.
std::filesystem::path device_dir();
// Where a user's devices are when nothing names another place: $XDG_STATE_HOME or ~/.local/state.
std::filesystem::path state_dir();

// What stands at device_dir(). A device carries a mark; whatever is there without one belongs to somebody
// else and is never touched.
enum class DirState {
  absent,
  empty,
  device,
  foreign,     // not empty and not a device, or no directory
  outdated,    // a device that another version of this software made
  inaccessible // of another user, or without the permission to look at it
};
DirState device_dir_state();

// Makes device_dir() a device: creates it as far as it is missing, for its user alone (0700), and marks it.
// Does nothing to a device. Throws std::runtime_error, a line for a person, when it is neither missing, empty
// nor a device.
void claim_device_dir();
// Takes the mark away, and the directory when nothing else is in it.
void release_device_dir();

// The store lies in "store" below the device directory.
std::filesystem::path store_dir();
// Both answer 0 or a system error. Nothing can be read where there is no device: ENOENT.
int store_readable(const std::filesystem::path &store);
// Claims the device and creates the directory as far as they are missing. A device directory without write
// permission is a device to look at only, whatever the files in it allow. ENOTEMPTY: foreign, ESTALE:
// outdated.
int prepare_store_dir(const std::filesystem::path &store);

} // namespace kova::host
#pragma GCC visibility pop
