// device: the virtual device itself.
#include "device/device.hpp"

#include "device/faults.hpp"
#include "kovactl/command.hpp"
#include "kovactl/commands.hpp"
#include "kovactl/device_fault.hpp"
#include "kovactl/device_run.hpp"
#include "kovactl/inform.hpp"
#include "platform/host/device_dir.hpp"

#include <algorithm>
#include <filesystem>
#include <iterator>

namespace kova::ctl {
namespace {

struct DeviceUpOptions : device::UpOptions {
  std::optional<std::string> acs; // "": none from now on
};
struct DeviceDirectory {
  std::string directory;
};

std::string running(std::optional<pid_t> daemon) {
  return daemon ? "running, pid " + std::to_string(*daemon) : "not running";
}

const char *state_of(const device::Status &status) {
  return !status.created ? "not created" : status.booted ? "up" : "down";
}

Json as_json(const device::Status &status) {
  return {{"directory", status.directory}, {"created", status.created},
          {"booted", status.booted},       {"serviced", status.serviced ? Json(*status.serviced) : Json()},
          {"feed", status.feed},           {"serial", status.serial}};
}

ExitStatus show(const Output &output, const device::Status &status) {
  if (output.json()) {
    Json json = as_json(status);
    json["agent"] = agent_json();
    json["faults"] = device::described(device::faults());
    output.print(json);
    return Success;
  }
  Table table{{{"directory"}, {status.directory.string()}},
              {{"device"}, {state_of(status), Style::Bold}},
              {{"service daemon"}, {running(status.serviced)}},
              {{"radio feed"}, {status.feed ? "on" : "off"}},
              {{"serial number"}, {status.serial}}};
  std::ranges::move(agent_rows(), std::back_inserter(table));
  std::ranges::move(fault_rows(), std::back_inserter(table));
  output.print(table);
  return Success;
}

ExitStatus up(const Output &output, const DeviceUpOptions &options) {
  device::up(options);
  if (options.acs)
    options.acs->empty() ? stop_management_agent() : start_management_agent(output, *options.acs);
  return show(output, device::status());
}

template <void (*act)()>
ExitStatus act_and_show(const Output &output, const NoOptions &) {
  act();
  return show(output, device::status());
}

ExitStatus remove(const Output &output, const NoOptions &) {
  const device::Status before = device::status();
  if (!before.created) return output.failure("there is no device in " + before.directory.string());
  device::remove();
  if (output.json())
    output.print(Json{{"removed", before.directory}});
  else
    output.print(Table{{{"removed " + before.directory.string()}}});
  return Success;
}

ExitStatus show_status(const Output &output, const NoOptions &) {
  const device::Status status = device::status();
  show(output, status);
  return status.booted && status.serviced ? Success : NotRunning;
}

// Those in the directory, which may be one itself.
std::vector<device::Status> devices_in(const std::filesystem::path &directory) {
  std::vector<std::filesystem::path> places{directory};
  std::error_code error;
  for (const auto &entry : std::filesystem::directory_iterator(directory, error))
    if (entry.is_directory(error)) places.push_back(entry.path());
  std::ranges::sort(places);
  std::vector<device::Status> found;
  for (const std::filesystem::path &place : places) {
    setenv("KOVA_DEVICE", place.c_str(), 1);
    if (host::device_dir_state() == host::DirState::device) found.push_back(device::status());
  }
  return found;
}

ExitStatus list(const Output &output, const DeviceDirectory &place) {
  const std::filesystem::path here = host::device_dir();
  const auto devices =
      devices_in(place.directory.empty() ? here.parent_path() : std::filesystem::path(place.directory));
  Json array = Json::array();
  Table table{heading({"DIRECTORY", "DEVICE", "SERIAL NUMBER"})};
  for (const device::Status &status : devices) {
    array.push_back(as_json(status));
    table.push_back({{status.directory.string(), Style::Bold}, {state_of(status)}, {status.serial}});
  }
  output.json() ? output.print(array) : output.print(table);
  return Success;
}

} // namespace

void add_device(Commands &commands) {
  Commands group = commands.group("device", "The virtual device itself");
  auto [upping, options] =
      group.add<DeviceUpOptions>("up", "Create the device if need be, boot it, start its service daemon", up);
  upping.option("--serial", "TEXT", &options.serial, "The serial number of a device to be created");
  upping.option("--acs", "URL", &options.acs,
                "Have the device managed by the server at this URL; \"\" by none");
  group.add<NoOptions>("down", "Stop the service daemon; the settings stay", act_and_show<device::down>);
  group.add<NoOptions>("reboot", "Stop and boot the device", act_and_show<device::reboot>);
  group.add<NoOptions>("reset", "Back to factory settings: all settings and the log are lost",
                       act_and_show<device::reset>);
  group.add<NoOptions>(
      "status", "Show where the device is and whether it runs: exit status 3 if not all does", show_status);
  add_device_run(group);
  add_device_fault(group);
  auto [listing, place] =
      group.add<DeviceDirectory>("list", "Show the devices beside this one, or those in a directory", list);
  listing.words("DIR", &place.directory);
  group.add<NoOptions>("remove", "Stop the device and remove it with all its settings", remove);
}

} // namespace kova::ctl
