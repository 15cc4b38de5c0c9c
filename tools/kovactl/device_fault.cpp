// device fault: what the device is to do wrong.
#include "kovactl/device_fault.hpp"

#include "device/faults.hpp"
#include "kovactl/agent.hpp"
#include "kovactl/command.hpp"

#include <algorithm>

namespace kova::ctl {
namespace {

struct FaultOptions {
  std::string delay, break_after, reboot_after;
  std::vector<std::string> failing;
  bool deaf = false, clear = false;
};

void take(int &number, const std::string &given) {
  if (!given.empty()) number = std::stoi(given);
}

ExitStatus fault(const Output &output, const FaultOptions &options) {
  if (!device::status().booted) return output.failure("the device is down: faults last until a boot");
  device::Faults faults = options.clear ? device::Faults() : device::faults();
  take(faults.delay, options.delay);
  take(faults.break_after, options.break_after);
  take(faults.reboot_after, options.reboot_after);
  for (const std::string &path : options.failing)
    if (std::ranges::find(faults.failing, path) == faults.failing.end()) faults.failing.push_back(path);
  faults.deaf = faults.deaf || options.deaf;
  device::set_faults(faults);
  if (output.json())
    output.print(Json{{"faults", device::described(faults)}});
  else
    output.print(faults.any() ? fault_rows() : Table{{{"no faults"}}});
  return Success;
}

} // namespace

Table fault_rows() {
  Table rows;
  for (const std::string &each : device::described(device::faults()))
    rows.push_back({{rows.empty() ? "faults" : ""}, {each, Style::Alarm}});
  return rows;
}

void add_device_fault(Commands &group) {
  auto [command, options] = group.add<FaultOptions>(
      "fault", "Have the device do wrong until it boots; without options, show what it does", fault);
  command.option("--slow", "SECONDS", &options.delay, "Take so long for each message of a session")
      .check(number_rule);
  command.option("--break-after", "N", &options.break_after, "Break a session off after its N-th message")
      .check(number_rule);
  command.option("--reboot-after", "N", &options.reboot_after, "Reboot after the N-th message of a session")
      .check(number_rule);
  command.option("--fail", "PATH", &options.failing,
                 "Answer 9002 for this parameter, or for all of a branch; may be given again");
  command.flag("--deaf", options.deaf, "Do not answer connection requests");
  command.flag("--clear", options.clear, "Forget the faults before");
}

} // namespace kova::ctl
