// device: the virtual device itself.
#include "device/device.hpp"

#include "kovactl/command.hpp"
#include "kovactl/commands.hpp"

namespace kova::ctl {
namespace {

struct Options {};

std::string running(std::optional<pid_t> daemon) {
  return daemon ? "running, pid " + std::to_string(*daemon) : "not running";
}

Json process_id(std::optional<pid_t> daemon) {
  return daemon ? Json(*daemon) : Json();
}

void show(const Output &output, const device::Status &status) {
  const char *state = !status.created ? "not created" : status.booted ? "up" : "down";
  if (output.json())
    output.print(Json{{"directory", status.directory},
                      {"created", status.created},
                      {"booted", status.booted},
                      {"serviced", process_id(status.serviced)},
                      {"feed", status.feed},
                      {"serial", status.serial}});
  else
    output.print(Table{{{"directory"}, {status.directory.string()}},
                       {{"device"}, {state, Style::Bold}},
                       {{"service daemon"}, {running(status.serviced)}},
                       {{"radio feed"}, {status.feed ? "on" : "off"}},
                       {{"serial number"}, {status.serial}}});
}

template <void (*act)()>
ExitStatus act_and_show(const Output &output, const Options &) {
  act();
  show(output, device::status());
  return Success;
}

ExitStatus show_status(const Output &output, const Options &) {
  const device::Status status = device::status();
  show(output, status);
  return status.booted && status.serviced ? Success : NotRunning;
}

} // namespace

void add_device(Commands &commands) {
  Commands group = commands.group("device", "The virtual device itself");
  group.add<Options>("up", "Create the device if need be, boot it, start its service daemon",
                     act_and_show<device::up>);
  group.add<Options>("down", "Stop the service daemon; the settings stay", act_and_show<device::down>);
  group.add<Options>("reset", "Back to factory settings: all settings and the log are lost",
                     act_and_show<device::reset>);
  group.add<Options>("status", "Show where the device is and whether it runs: exit status 3 if not all does",
                     show_status);
}

} // namespace kova::ctl
