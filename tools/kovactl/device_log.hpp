// The device log: what the device was asked to do.
#pragma once

#include "kovactl/output.hpp"

#include <sys/types.h>

#include <cstddef>
#include <filesystem>
#include <optional>
#include <vector>

namespace kova::ctl {

// Reads the records that were appended since the last look; notices when the log was emptied.
class LogReader {
public:
  explicit LogReader(std::filesystem::path file) : file_(std::move(file)) {}
  std::vector<Json> records();
  void skip();

private:
  std::vector<Json> records_in(const std::filesystem::path &path);

  std::filesystem::path file_;
  std::streamoff offset_ = 0;
  ino_t inode_ = 0;
};

// Service requests are logged by the daemon, which may come to them a moment after they were sent. Returns when it has
// dealt with all that this process sent, at once when there is no daemon.
void await_service();

Table as_table(const std::vector<Json> &records);

struct LogOptions {
  std::optional<size_t> tail; // only so many of the last records
  bool follow = false;
};
ExitStatus show_log(const Output &output, const std::filesystem::path &file, const LogOptions &options);

} // namespace kova::ctl
