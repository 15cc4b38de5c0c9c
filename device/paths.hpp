// Where things lie below the device's directory.
#pragma once

#include "platform/host/device_dir.hpp"

#include <filesystem>
#include <string_view>

namespace kova::device {

inline std::filesystem::path run_dir() {
  return host::device_dir() / "run";
}
inline std::filesystem::path bin_dir() {
  return host::device_dir() / "bin";
}
inline std::filesystem::path log_dir() {
  return host::device_dir() / "log";
}

// Where an absolute path of the device lies: on_device("/tmp/mrhd_socket").
inline std::filesystem::path on_device(std::string_view path) {
  return host::device_dir() / "root" / path.substr(1);
}

} // namespace kova::device
