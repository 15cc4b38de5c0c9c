// A copy of the device, without its daemon: what is done to it is forgotten.
#pragma once

#include <filesystem>
#include <string>

namespace kova::ctl {

// While this exists, the process works on the copy.
class Trial {
public:
  Trial();
  ~Trial();
  Trial(const Trial &) = delete;
  Trial &operator=(const Trial &) = delete;

private:
  std::filesystem::path copy_;
  std::string device_;
};

} // namespace kova::ctl
