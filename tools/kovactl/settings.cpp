// settings: the management server's settings, kept across a configuration reset.
#include "device/paths.hpp"
#include "kovactl/agent.hpp"
#include "kovactl/command.hpp"
#include "kovactl/commands.hpp"

#include <kova/management.h>

#include <fstream>
#include <iterator>

namespace kova::ctl {
namespace {

constexpr int backup_mode = 1, restore_mode = 2;

std::filesystem::path backup_file() {
  return device::on_device("/var/log/.backup_settings");
}

std::string text_of(const std::filesystem::path &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// A device without room leaves a file that breaks off: the last of the settings is not in it.
bool is_whole_backup() {
  return text_of(backup_file()).find("S_TR_CLOUDKEY=") != std::string::npos;
}

ExitStatus done(const Output &output, const char *what, const std::string &text) {
  if (output.json())
    output.print(Json{{"done", what}, {"file", backup_file()}});
  else
    output.print(Table{{{text}}});
  return Success;
}

ExitStatus back_up(const Output &output, const NoOptions &) {
  start_agent(output);
  const std::string file = backup_file().string();
  if (in_turn([] { return backup_restore_settings(backup_mode); }) != 0 || !is_whole_backup())
    return output.failure("cannot write " + file);
  return done(output, "backup", "kept the server settings of both management instances in " + file);
}

ExitStatus restore(const Output &output, const NoOptions &) {
  start_agent(output);
  const std::string file = backup_file().string();
  if (!std::filesystem::exists(backup_file()))
    return output.failure("there is no backup to restore: kovactl settings backup makes one");
  if (text_of(backup_file()).empty()) return output.failure(file + " is empty: there is nothing to put back");
  if (in_turn([] { return backup_restore_settings(restore_mode); }) != 0)
    return output.failure("cannot read " + file);
  device::start_agents();
  return done(output, "restore", "put back the server settings of both management instances from " + file);
}

} // namespace

void add_settings(Commands &commands) {
  Commands settings = commands.group("settings", "The management server's settings");
  settings.add<NoOptions>("backup", "Keep them in a file, so that a configuration reset does not lose them",
                          back_up);
  settings.add<NoOptions>("restore", "Put back those that were kept; the file is removed", restore);
}

} // namespace kova::ctl
