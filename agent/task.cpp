// kova-cwmp-task: what the agent has done by a program of its own: a session, a file transfer, a reboot, a
// factory reset.
#include "agent/names.hpp"
#include "agent/session.hpp"
#include "agent/transfers.hpp"
#include "device/device.hpp"

#include <CLI/CLI.hpp>
#include <kova/frame.h>
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

} // namespace

int main(int argc, char **argv) {
  CLI::App app("One task of the management agent", "kova-cwmp-task");
  SessionOptions options;
  std::string trace_file, transfer;
  bool secondary = false;
  app.add_flag("--secondary", secondary, "Act for the secondary management instance");
  app.add_option("--trace", trace_file, "Keep every message, passwords masked");
  app.add_option("--ca", options.tls.ca, "Certificates with which the server's is verified");
  app.add_option("--cert", options.tls.certificate, "Certificate of the device");
  app.add_option("--key", options.tls.key, "Its private key, if that is not in the same file");
  app.add_option("--retry-wait", options.least_retry_wait, "Least wait after a failed session, in seconds");
  app.add_option("--timeout", options.exchange_seconds, "Longest wait for an answer, in seconds");
  app.require_subcommand(1);
  const CLI::App *session = app.add_subcommand("session", "Report what is pending, and serve the ACS");
  CLI::App *move = app.add_subcommand("transfer", "Move a file");
  move->add_option("RECORD", transfer)->required();
  const CLI::App *boot = app.add_subcommand("reboot", "Boot the device again");
  app.add_subcommand("factory-reset", "Back to factory settings, but for the operator's preset");
  CLI11_PARSE(app, argc, argv);
  if (secondary) setSecondaryInstance();
  try {
    // The device's programs lie beside this one, and not where those of the tools in bin/ do.
    setenv("KOVA_LIBEXEC", std::filesystem::read_symlink("/proc/self/exe").parent_path().c_str(), 0);
    if (*boot) {
      device::reboot();
      return 0;
    }
    if (!*session && !*move) {
      reset_to_factory();
      return 0;
    }
    // Another agent may follow one that is killed: its sessions must not meet this one's.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    Store store(store_file());
    if (*move) return carry_out_transfer(store, transfer) ? 0 : 1;
    Trace trace(trace_file);
    return run_session(store, options, trace) ? 0 : 1;
  } catch (const std::exception &error) {
    std::fprintf(stderr, "kova-cwmp-task: %s\n", error.what());
    return 1;
  }
}
