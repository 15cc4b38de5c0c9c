// The device log: what the device was asked to do.
#pragma once

#include "kovactl/output.hpp"

#include <sys/types.h>

#include <filesystem>
#include <vector>

namespace kova::ctl {

// Reads the records that were appended since the last look; notices when the log was emptied.
class LogReader {
public:
  explicit LogReader(std::filesystem::path file) : file_(std::move(file)) {}
  std::vector<Json> records();
  void skip();
  // Only those of what this process asked for.
  std::vector<Json> own_records();

private:
  std::vector<Json> records_in(const std::filesystem::path &path);

  std::filesystem::path file_;
  std::streamoff offset_ = 0;
  ino_t inode_ = 0;
};

// Service requests are logged by the daemon, which may come to them a moment after they were sent. Returns
// when it has dealt with all that this process sent, at once when there is no daemon.
void await_service();

Table log_table(const std::vector<Json> &records);

} // namespace kova::ctl
