#include "kovactl/settings.hpp"

#include "device/paths.hpp"
#include "management/management.h"

namespace kova::ctl {
namespace {

constexpr int backup_mode = 1, restore_mode = 2;

std::filesystem::path backup_file() {
  return device::on_device("/var/log/.backup_settings");
}

ExitStatus done(const Output &output, const char *what, const std::string &text) {
  if (output.json())
    output.print(Json{{"done", what}, {"file", backup_file()}});
  else
    output.print(Table{{{text}}});
  return Success;
}

} // namespace

ExitStatus back_up_settings(const Output &output) {
  const std::string file = backup_file().string();
  if (backup_restore_settings(backup_mode) != 0) return output.failure("cannot write " + file);
  return done(output, "backup", "kept the server settings of both management instances in " + file);
}

ExitStatus restore_settings(const Output &output) {
  const std::string file = backup_file().string();
  if (!std::filesystem::exists(backup_file()))
    return output.failure("there is no backup to restore: kovactl settings backup makes one");
  if (backup_restore_settings(restore_mode) != 0) return output.failure("cannot read " + file);
  return done(output, "restore", "put back the server settings of both management instances from " + file);
}

} // namespace kova::ctl
