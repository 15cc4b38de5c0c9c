// What each command does, once the command line is understood.
#pragma once

#include "kovactl/device_log.hpp"
#include "kovactl/output.hpp"
#include "kovactl/request.hpp"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kova::ctl {

// What the command line asked for.
struct Arguments {
  bool json = false, secondary = false;
  std::string device;

  std::vector<std::string> names;       // paths or keys
  std::vector<std::string> assignments; // NAME=VALUE
  std::string prefix, format;
  std::string account; // of the web interface
  std::optional<std::string> request_file;
  bool with_log = false, with_tests = false, paths_only = false, writable_only = false, lists_only = false;
  int timeout = 120;
  int section = 0;
  std::optional<int> listed_section;
  LogOptions log;
};

using Command = std::function<ExitStatus(const Output &, const Arguments &)>;

// A command that works on a running device: boots it, and creates it on first use.
Command on_device(const Command &command);
// One that acts as an agent: does what an agent does once when it starts, too.
Command on_agent(const Command &command);

ExitStatus get(const Output &output, const Arguments &arguments);
ExitStatus set(const Output &output, const Arguments &arguments);
ExitStatus list(const Output &output, const Arguments &arguments);
ExitStatus show_model(const Output &output, const Arguments &arguments);
// Adds or deletes the row of a list that the path names.
Command row_command(RowChange (*change)(const std::string &));
// Acts on the device, if there is something to do, and shows its status.
Command device_command(void (*act)());

std::vector<Assignment> parsed_assignments(const Arguments &arguments);
// What is wrong with the text of a number, or "".
std::string number_rule(const std::string &text);

} // namespace kova::ctl
