// fleet up, down, remove: many devices at once.
#include "agent/attributes.hpp"
#include "agent/control.hpp"
#include "agent/names.hpp"
#include "device/device.hpp"
#include "device/service.hpp"
#include "kovactl/commands.hpp"
#include "kovactl/fleet_commands.hpp"
#include "kovactl/fleet_work.hpp"
#include "kovactl/inform.hpp"
#include "platform/host/console_admin.hpp"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <set>

namespace kova::ctl {
namespace {

using Clock = std::chrono::steady_clock;

struct FleetDirectory {
  std::string directory;
};
struct FleetUpOptions : FleetDirectory {
  std::string count, acs, prefix, ramp = "0";
};

constexpr const char *up_already = "up already";

std::string stored_url() {
  agent::Store store(agent::store_file());
  return agent::read_value(store, agent::parameter::url);
}

bool is_up(const std::string &acs) {
  return device::status().booted && !device::missing_daemon() && (acs.empty() || stored_url() == acs);
}

// An agent that is started has its first session after so long.
void delay_first_inform(Clock::time_point due) {
  const auto wait = std::chrono::ceil<std::chrono::seconds>(due - Clock::now()).count();
  if (wait > 0) setenv(agent::first_inform_delay, std::to_string(wait).c_str(), 1);
}

ExitStatus summarize(const Output &output, const Fleet &fleet, const WorkDone &done, const char *what) {
  const auto well = std::ranges::count_if(done.results, &DeviceResult::well);
  const auto already = std::ranges::count(done.results, up_already, &DeviceResult::out);
  if (output.json()) {
    Json failed = Json::object();
    for (const DeviceResult &result : done.results)
      if (!result.well()) failed[result.serial] = result.answer();
    output.print(Json{{"directory", fleet.directory()}, {what, well}, {"failed", failed}});
    return failed.empty() && !done.interrupted ? Success : Failure;
  }
  const ExitStatus status = report_failures(output, done);
  output.print(Table{{{std::to_string(well) + " devices " + what +
                       (already > 0 ? ", " + std::to_string(already) + " of them were so already" : "") +
                       " in " + fleet.directory().string()}}});
  return status;
}

ExitStatus up(const Output &output, const FleetUpOptions &options) {
  const unsigned long count = std::stoul(options.count), ramp = std::stoul(options.ramp);
  if (count == 0 || count > Fleet::most_devices)
    return output.failure("a fleet has 1 to " + std::to_string(Fleet::most_devices) + " devices", BadUsage);
  const Fleet fleet = Fleet::made_at(fleet_directory(options.directory), {options.prefix, options.acs});
  std::vector<std::string> serials;
  for (unsigned ordinal = 1; ordinal <= count; ++ordinal)
    serials.push_back(fleet.serial(ordinal));
  const auto begin = Clock::now();
  const auto work = [&](const std::string &serial, const Output &out) {
    const std::string &acs = fleet.traits().acs;
    if (is_up(acs)) {
      out.print_document(up_already);
      return Success;
    }
    const auto position = std::ranges::lower_bound(serials, serial) - serials.begin();
    delay_first_inform(begin +
                       std::chrono::milliseconds(1000 * ramp * static_cast<unsigned long>(position) / count));
    host::console_quiet(true);
    device::up({.serial = serial, .like = fleet.device(serials.front())});
    if (!acs.empty()) start_management_agent(out, acs);
    return Success;
  };
  return summarize(output, fleet, on_each_device(fleet, serials, output, work), "up");
}

ExitStatus down(const Output &output, const FleetDirectory &place) {
  const Fleet fleet(fleet_directory(place.directory));
  const auto work = [](const std::string &, const Output &) {
    device::down();
    return Success;
  };
  return summarize(output, fleet, on_each_device(fleet, fleet.serials(), output, work), "down");
}

ExitStatus remove(const Output &output, const FleetDirectory &place) {
  const Fleet fleet(fleet_directory(place.directory));
  const auto work = [](const std::string &, const Output &) {
    device::remove();
    return Success;
  };
  const ExitStatus status =
      summarize(output, fleet, on_each_device(fleet, fleet.serials(), output, work), "removed");
  if (status == Success) fleet.release();
  return status;
}

} // namespace

void add_fleet_place(const Command &command, std::string &directory) {
  command.option("--dir", "DIR", &directory,
                 "Directory of the fleet (default: kova-fleet in the state directory)");
}

void add_fleet_life(Commands &group) {
  auto [upping, options] = group.add<FleetUpOptions>(
      "up", "Create and boot devices as far as they are not up, so that there are N", up);
  upping.words("N", &options.count, "How many devices there are to be").required().check(number_rule);
  add_fleet_place(upping, options.directory);
  upping.option("--acs", "URL", &options.acs, "Have all devices managed by the server at this URL");
  upping.option("--serial", "PREFIX", &options.prefix, "What the serial numbers begin with (default: KVF-)");
  upping.option("--ramp", "SECONDS", &options.ramp, "Spread the first informs over so long (default: 0)")
      .check(number_rule);
  auto [downing, place] = group.add<FleetDirectory>("down", "Stop all devices; their settings stay", down);
  add_fleet_place(downing, place.directory);
  auto [removing, removed] =
      group.add<FleetDirectory>("remove", "Stop all devices and remove them with all their settings", remove);
  add_fleet_place(removing, removed.directory);
}

void add_fleet(Commands &commands) {
  Commands group = commands.group("fleet", "Many virtual devices, below one directory");
  add_fleet_life(group);
  add_fleet_status(group);
  add_fleet_exec(group);
}

} // namespace kova::ctl
