#include "kovactl/trial.hpp"

#include "device/device.hpp"
#include "device/error.hpp"

#include <cstdlib>

namespace fs = std::filesystem;

namespace kova::ctl {
namespace {

// Sockets, pipes and the records of what the device was asked are not copied.
void copy_device(const fs::path &from, const fs::path &to) {
  std::error_code error;
  for (fs::recursive_directory_iterator each(from, error), end; each != end && !error;
       each.increment(error)) {
    const fs::path target = to / each->path().lexically_relative(from);
    if (each->is_symlink())
      fs::copy_symlink(each->path(), target, error);
    else if (each->is_directory())
      fs::create_directory(target, each->path(), error);
    else if (each->is_regular_file() && each->path().parent_path() != from / "log")
      fs::copy_file(each->path(), target, error);
  }
  if (error) throw std::runtime_error("cannot copy the device to " + to.string() + ": " + error.message());
}

} // namespace

Trial::Trial() : device_(device::status().directory.string()) {
  std::string directory = (fs::temp_directory_path() / "kova-trial-XXXXXX").string();
  if (!mkdtemp(directory.data())) device::fail("cannot create " + directory);
  copy_ = directory;
  {
    const device::Turn turn;
    copy_device(device_, copy_);
  }
  setenv("KOVA_DEVICE", copy_.c_str(), 1);
}

Trial::~Trial() {
  setenv("KOVA_DEVICE", device_.c_str(), 1);
  std::error_code error;
  fs::remove_all(copy_, error);
}

} // namespace kova::ctl
