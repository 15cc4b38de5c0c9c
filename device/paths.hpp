// Where things lie below the device's directory.
#pragma once

#include "device/daemons.hpp"
#include "platform/host/device_dir.hpp"

#include <filesystem>
#include <string>
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
inline std::filesystem::path pid_file_of(const Daemon &daemon) {
  return run_dir() / (std::string(daemon.name) + ".pid");
}
// The words that the daemon is started with; it may be missing.
inline std::filesystem::path arguments_of(const Daemon &daemon) {
  return run_dir() / (std::string(daemon.name) + ".arguments");
}
inline std::filesystem::path messages_of(const Daemon &daemon) {
  return log_dir() / (std::string(daemon.name) + ".log");
}

// Is there while the device has faults on demand.
inline std::filesystem::path faults_file() {
  return run_dir() / "faults";
}

// Where an absolute path of the device lies: on_device("/tmp/mrhd_socket").
inline std::filesystem::path on_device(std::string_view path) {
  return host::device_dir() / "root" / path.substr(1);
}

} // namespace kova::device
