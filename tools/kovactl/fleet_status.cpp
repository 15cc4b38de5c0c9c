// fleet status: how the devices of a fleet are, in numbers.
#include "agent/control.hpp"
#include "device/device.hpp"
#include "kovactl/fleet.hpp"
#include "kovactl/fleet_commands.hpp"

#include <algorithm>
#include <cstdio>
#include <map>

namespace kova::ctl {
namespace {

struct FleetStatusOptions {
  std::string directory;
};

struct Totals {
  unsigned devices = 0, up = 0, agents = 0;
  unsigned informed = 0; // since their last boot
  unsigned failing = 0;  // with their last session
  unsigned retrying = 0, sessions_a_minute = 0;
  std::chrono::milliseconds slowest{};
  std::string slowest_serial;
  std::map<std::string, unsigned> failures; // by reason
};

void count_agent(Totals &totals, const std::string &serial, const agent::AgentStatus &status) {
  const agent::SessionStatus &last = status.last_session;
  totals.agents += status.process ? 1U : 0U;
  totals.informed += status.informed ? 1U : 0U;
  totals.retrying += status.retries.count != 0 ? 1U : 0U;
  totals.sessions_a_minute += last.in_minute_before(std::time(nullptr));
  if (!last.failure.empty() && !last.running) {
    ++totals.failing;
    ++totals.failures[last.failure];
  }
  if (last.duration > totals.slowest) {
    totals.slowest = last.duration;
    totals.slowest_serial = serial;
  }
}

Totals totals_of(const Fleet &fleet, const Output &output) {
  Totals totals;
  for (const std::string &serial : fleet.serials()) {
    select_device(fleet.device(serial));
    const device::Status status = device::status();
    totals.up += status.booted && status.serviced ? 1U : 0U;
    count_agent(totals, serial, agent::agent_status());
    if (++totals.devices % 100 == 0) output.progress(std::to_string(totals.devices) + " devices");
  }
  output.progress("");
  return totals;
}

std::string seconds(std::chrono::milliseconds time) {
  char text[32];
  std::snprintf(text, sizeof text, "%.3f s", static_cast<double>(time.count()) / 1000);
  return text;
}

void print_json(const Output &output, const Fleet &fleet, const Totals &totals) {
  const Json slowest = totals.slowest_serial.empty() ? Json()
                                                     : Json{{"serial", totals.slowest_serial},
                                                            {"milliseconds", totals.slowest.count()}};
  output.print(Json{{"directory", fleet.directory()},
                    {"acs", fleet.traits().acs},
                    {"devices", totals.devices},
                    {"up", totals.up},
                    {"agents", totals.agents},
                    {"informed", totals.informed},
                    {"failing", totals.failing},
                    {"retrying", totals.retrying},
                    {"sessionsPerMinute", totals.sessions_a_minute},
                    {"slowest", slowest},
                    {"failures", totals.failures}});
}

void print_table(const Output &output, const Fleet &fleet, const Totals &totals) {
  const auto number = [](unsigned count) { return Cell{std::to_string(count), Style::Bold}; };
  Table table{{{"directory"}, {fleet.directory().string()}},
              {{"devices"}, number(totals.devices)},
              {{"up"}, number(totals.up)}};
  if (!fleet.traits().acs.empty()) {
    table.insert(table.end(), {{{"management server"}, {fleet.traits().acs}},
                               {{"agents"}, number(totals.agents)},
                               {{"informed"}, number(totals.informed)},
                               {{"failing"}, number(totals.failing)}});
    for (const auto &[reason, count] : totals.failures)
      table.push_back({{"  " + std::to_string(count)}, {reason, Style::Alarm}});
    table.insert(table.end(), {{{"retrying"}, number(totals.retrying)},
                               {{"sessions a minute"}, number(totals.sessions_a_minute)}});
    if (!totals.slowest_serial.empty())
      table.push_back({{"slowest session"}, {seconds(totals.slowest) + "  " + totals.slowest_serial}});
  }
  output.print(table);
}

ExitStatus status(const Output &output, const FleetStatusOptions &options) {
  const Fleet fleet(fleet_directory(options.directory));
  const Totals totals = totals_of(fleet, output);
  output.json() ? print_json(output, fleet, totals) : print_table(output, fleet, totals);
  const unsigned agents_wanted = fleet.traits().acs.empty() ? 0 : totals.devices;
  return totals.up == totals.devices && totals.agents >= agents_wanted ? Success : NotRunning;
}

} // namespace

void add_fleet_status(Commands &group) {
  auto [command, options] = group.add<FleetStatusOptions>(
      "status", "Show how many devices are up, informed, failing: exit status 3 if not all run", status);
  add_fleet_place(command, options.directory);
}

} // namespace kova::ctl
