#include "kovactl/agent.hpp"

#include "device/routes.hpp"
#include "platform/host/console_admin.hpp"
#include "platform/host/device_dir.hpp"

#include <kova/frame.h>
#include <kova/management.h>

namespace kova::ctl {

bool has_device() {
  return host::device_dir_state() == host::DirState::device;
}

void boot(const Output &output) {
  host::console_quiet(true); // what matters of it is in the reasons of a refusal
  const bool existed = device::status().created;
  device::ensure_booted();
  if (!existed) output.note("created a virtual device in " + device::status().directory.string());
}

namespace {

// Without a server to be reached there is no way to it either: the agent is bound to the uplink then.
void bind_without_server() {
  char url[256] = "";
  kovaGetTR069ManagementServerURL(url, sizeof url - 1);
  if (url[0] == '\0') setBindInterface(device::default_interface().c_str());
}

} // namespace

void start_agent(const Output &output) {
  boot(output);
  bind_without_server();
  // What it puts right may be put right at any time: a reading does not wait for the daemon.
  in_turn([] { return init_parameters(); }, device::Turn::Kind::reading);
}

} // namespace kova::ctl
