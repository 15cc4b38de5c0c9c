// A lock on a file, shared or exclusive, that nobody waits for without end. It goes with its last owner,
// however that ends; a process that inherits the handle owns it too.
#pragma once

#include "device/fd.hpp"

#include <chrono>
#include <filesystem>
#include <string>

namespace kova::device {

class Lock {
public:
  enum class Kind { shared, exclusive };

  // Throws std::runtime_error when it is not to be had in that time: `what` has been going on for so long.
  Lock(const std::filesystem::path &path, Kind kind, std::chrono::seconds patience, const std::string &what);
  int handle() const { return file_.get(); }

private:
  Fd file_;
};

} // namespace kova::device
