// kova-cwmp-task: what the agent has done by a program of its own: a session, a file transfer, a reboot, a
// factory reset.
#include "agent/names.hpp"
#include "agent/options.hpp"
#include "agent/session.hpp"
#include "agent/transfers.hpp"
#include "device/device.hpp"

#include <getopt.h>
#include <kova/management.h>
#include <sys/prctl.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace {

using namespace kova;
using namespace kova::agent;

// The operator's preset outlasts a reset; no agent is to see the device without it.
void reset_to_factory() {
  constexpr int back_up = 1, restore = 2;
  backup_restore_settings(back_up);
  device::reset([] { backup_restore_settings(restore); });
}

bool carry_out_transfer(Store &store, const std::string &record) {
  for (Transfer &transfer : store.read(transfers))
    if (transfer.record == record) {
      carry_out(store, std::move(transfer));
      return true;
    }
  return false;
}

constexpr const char *usage =
    "usage: kova-cwmp-task [OPTION...] session | transfer RECORD | reboot | factory-reset\n"
    "The options are those of the agent that starts it.\n";

// False when it failed.
bool carry_out(const std::string &task, const std::string &record, const Options &options) {
  if (task == "reboot") {
    device::reboot();
    return true;
  }
  if (task == "factory-reset") {
    reset_to_factory();
    return true;
  }
  // Another agent may follow one that is killed: its sessions must not meet this one's.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  Store store(store_file());
  if (task == "transfer") return carry_out_transfer(store, record);
  Trace trace(options.trace);
  return run_session(store, options, trace);
}

bool is_task(const std::vector<std::string> &words) {
  if (words.size() == 2) return words[0] == "transfer";
  return words.size() == 1 && (words[0] == "session" || words[0] == "reboot" || words[0] == "factory-reset");
}

} // namespace

int main(int argc, char **argv) {
  const auto options = read_options(argc, argv);
  const std::vector<std::string> words(argv + optind, argv + argc);
  if (!options || !is_task(words)) {
    std::fputs(usage, stderr);
    return 2;
  }
  try {
    // The device's programs lie beside this one, and not where those of the tools in bin/ do.
    setenv("KOVA_LIBEXEC", std::filesystem::read_symlink("/proc/self/exe").parent_path().c_str(), 0);
    return carry_out(words.front(), words.back(), *options) ? 0 : 1;
  } catch (const std::exception &error) {
    std::fprintf(stderr, "kova-cwmp-task: %s\n", error.what());
    return 1;
  }
}
