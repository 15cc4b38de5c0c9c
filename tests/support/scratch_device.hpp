// A device directory of a test's own. It does not exist yet: a device is laid out only in a directory that is new or
// empty. What is around it belongs to the test too and goes with it.
#pragma once

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace kova::test {

class ScratchDevice {
public:
  // below: directories between the scratch directory and the device's. Without the radio feed, whose
  // readings change every second, unless the test takes KOVA_FEED out of the environment.
  explicit ScratchDevice(const std::filesystem::path &below = "device") {
    std::string name = (std::filesystem::temp_directory_path() / "kova-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::system_error(errno, std::generic_category(), name);
    top_ = name;
    directory_ = top_ / below;
    setenv("KOVA_FEED", "off", 1);
    select();
  }
  ~ScratchDevice() {
    unsetenv("KOVA_DEVICE");
    set_writable(true);
    std::error_code ignored;
    std::filesystem::remove_all(top_, ignored);
  }
  ScratchDevice(const ScratchDevice &) = delete;
  ScratchDevice &operator=(const ScratchDevice &) = delete;

  const std::filesystem::path &top() const { return top_; }
  const std::filesystem::path &directory() const { return directory_; }
  std::filesystem::path store() const { return directory_ / "store"; }

  void select() const { select(directory_); }
  // Another directory, usually below the scratch directory.
  static void select(const std::filesystem::path &directory) { setenv("KOVA_DEVICE", directory.c_str(), 1); }

  void set_writable(bool writable) const {
    const auto mode = std::filesystem::perms(writable ? 0755 : 0555);
    for (const auto &part : {directory_, store()})
      if (std::filesystem::exists(part)) std::filesystem::permissions(part, mode);
  }

private:
  std::filesystem::path top_, directory_;
};

} // namespace kova::test
