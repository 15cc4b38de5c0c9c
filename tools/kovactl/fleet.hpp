// A fleet: devices below one directory, which bears a mark. Each lies in a directory that is named by its serial
// number, and is a device like any other.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kova::ctl {

class Fleet {
public:
  static constexpr unsigned most_devices = 99'999;

  // What its devices have in common.
  struct Traits {
    std::string serial_prefix;
    std::string acs; // the URL of the management server; "": none
  };

  // The fleet that is there. Throws std::runtime_error when there is none; nothing is touched then.
  explicit Fleet(const std::filesystem::path &directory);
  // The same; makes one of a directory that is missing or empty. Throws also for other serial numbers than it has;
  // "" leaves these and the server as they are.
  static Fleet made_at(const std::filesystem::path &directory, const Traits &wanted);

  const std::filesystem::path &directory() const { return directory_; }
  const Traits &traits() const { return traits_; }
  std::string serial(unsigned ordinal) const; // from 1
  std::filesystem::path device(const std::string &serial) const { return directory_ / serial; }
  // Of the devices that are there, in order.
  std::vector<std::string> serials() const;
  // Takes the mark away, and the directory when nothing else is in it.
  void release() const;

private:
  Fleet(std::filesystem::path directory, Traits traits)
      : directory_(std::move(directory)), traits_(std::move(traits)) {}

  std::filesystem::path directory_;
  Traits traits_;
};

// "": the default, beside the default device.
std::filesystem::path fleet_directory(const std::string &named);

// Makes it the device that this process acts on.
void select_device(const std::filesystem::path &directory);

} // namespace kova::ctl
