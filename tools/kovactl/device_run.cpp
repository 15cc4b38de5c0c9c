// device run: the device for as long as this process lives, for a supervisor of processes.
#include "kovactl/device_run.hpp"

#include "device/device.hpp"
#include "kovactl/command.hpp"
#include "kovactl/inform.hpp"

#include <sys/wait.h>

#include <csignal>
#include <ctime>

namespace kova::ctl {
namespace {

struct RunOptions {
  std::optional<std::string> serial;
  std::string acs;
};

// Within this process, which looks for them itself.
sigset_t hold_back_signals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int number : {SIGTERM, SIGINT, SIGHUP})
    sigaddset(&signals, number);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  return signals;
}

bool told_to_end(const sigset_t &signals) {
  constexpr timespec pause{1, 0};
  return sigtimedwait(&signals, nullptr, &pause) > 0;
}

// As the first process of a container it is the parent of the daemons.
void bury_children() {
  while (waitpid(-1, nullptr, WNOHANG) > 0) {
  }
}

ExitStatus run(const Output &output, const RunOptions &options) {
  const sigset_t signals = hold_back_signals();
  device::up({.serial = options.serial});
  if (!options.acs.empty()) start_management_agent(output, options.acs);
  output.note("the device " + device::status().serial + " is up");
  constexpr int patience = 10; // seconds: a reboot goes by
  for (int missing = 0; missing < patience;) {
    if (told_to_end(signals)) {
      device::down();
      return Success;
    }
    bury_children();
    missing = device::missing_daemon() || !device::status().booted ? missing + 1 : 0;
  }
  if (const auto daemon = device::missing_daemon())
    return output.failure(std::string(daemon->what) + " has died");
  output.note("somebody has stopped the device");
  return Success;
}

} // namespace

void add_device_run(Commands &group) {
  auto [command, options] = group.add<RunOptions>(
      "run", "Bring the device up and stay, until a signal stops it or a daemon dies", run);
  command.option("--serial", "TEXT", &options.serial, "The serial number of a device to be created");
  command.option("--acs", "URL", &options.acs, "Have the device managed by the server at this URL");
}

} // namespace kova::ctl
