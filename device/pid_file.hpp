// The pid file of a daemon. It is locked as long as the daemon lives, so one left behind misleads nobody.
#pragma once

#include "device/fd.hpp"

#include <sys/types.h>

#include <filesystem>
#include <optional>

namespace kova::device {

class PidFile {
public:
  // Throws std::runtime_error when another process holds it.
  explicit PidFile(const std::filesystem::path &path);
  ~PidFile();          // removes the file
  bool stands() const; // false when somebody has removed it
  PidFile(const PidFile &) = delete;
  PidFile &operator=(const PidFile &) = delete;

private:
  std::filesystem::path path_;
  Fd file_;
};

// The process that holds the file.
std::optional<pid_t> pid_file_owner(const std::filesystem::path &path);

} // namespace kova::device
