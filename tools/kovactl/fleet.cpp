#include "kovactl/fleet.hpp"

#include "device/file_system.hpp"
#include "device/identity.hpp"
#include "kovactl/output.hpp"
#include "platform/host/device_dir.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace fs = std::filesystem;

namespace kova::ctl {
namespace {

constexpr const char *mark_name = "kova-fleet", *version_key = "kova fleet", *default_prefix = "KVF-";
constexpr int version = 1;

void write_mark(const fs::path &directory, const Fleet::Traits &traits) {
  device::write_file(
      directory / mark_name,
      Json{{version_key, version}, {"serial", traits.serial_prefix}, {"acs", traits.acs}}.dump() + "\n");
}

bool is_absent_or_empty(const fs::path &directory) {
  std::error_code error;
  return !fs::exists(directory) || (fs::is_directory(directory) && fs::is_empty(directory, error) && !error);
}

} // namespace

Fleet::Fleet(const fs::path &directory) : directory_(fs::absolute(directory)) {
  const Json mark = Json::parse(device::text_of(directory_ / mark_name), nullptr, false);
  if (!mark.is_object() || mark.value(version_key, 0) != version)
    throw std::runtime_error("there is no fleet in " + directory_.string());
  traits_ = {mark.value("serial", default_prefix), mark.value("acs", "")};
}

Fleet Fleet::made_at(const fs::path &directory, const Traits &wanted) {
  if (is_absent_or_empty(directory)) {
    const std::string prefix = wanted.serial_prefix.empty() ? default_prefix : wanted.serial_prefix;
    Fleet fleet(fs::absolute(directory), {prefix, wanted.acs});
    device::identity_of(fleet.serial(most_devices)); // throws for what makes no serial numbers
    device::make_directories(fleet.directory_);
    write_mark(fleet.directory_, fleet.traits_);
    return fleet;
  }
  if (!fs::exists(directory / mark_name))
    throw std::runtime_error(directory.string() + " is not a fleet and not empty: nothing in it is touched");
  Fleet fleet(directory);
  if (!wanted.serial_prefix.empty() && wanted.serial_prefix != fleet.traits_.serial_prefix)
    throw std::runtime_error("the serial numbers of the fleet in " + fleet.directory_.string() +
                             " begin with " + fleet.traits_.serial_prefix +
                             ": others take another directory");
  if (!wanted.acs.empty() && wanted.acs != fleet.traits_.acs) {
    fleet.traits_.acs = wanted.acs;
    write_mark(fleet.directory_, fleet.traits_);
  }
  return fleet;
}

std::string Fleet::serial(unsigned ordinal) const {
  char digits[16];
  std::snprintf(digits, sizeof digits, "%05u", ordinal);
  return traits_.serial_prefix + digits;
}

std::vector<std::string> Fleet::serials() const {
  std::vector<std::string> serials;
  for (const auto &entry : fs::directory_iterator(directory_)) {
    const std::string name = entry.path().filename();
    if (!name.starts_with(traits_.serial_prefix) || entry.is_symlink()) continue;
    select_device(entry.path());
    if (host::device_dir_state() == host::DirState::device) serials.push_back(name);
  }
  std::ranges::sort(serials);
  return serials;
}

void Fleet::release() const {
  fs::remove(directory_ / mark_name);
  std::error_code not_empty;
  fs::remove(directory_, not_empty);
}

fs::path fleet_directory(const std::string &named) {
  return named.empty() ? host::state_dir() / "kova-fleet" : fs::absolute(named);
}

void select_device(const fs::path &directory) {
  setenv("KOVA_DEVICE", directory.c_str(), 1);
}

} // namespace kova::ctl
