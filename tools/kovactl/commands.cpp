#include "kovactl/commands.hpp"

#include "device/device.hpp"
#include "frame/frame.h"
#include "kovactl/report.hpp"

#include <set>

namespace kova::ctl {
namespace {

void boot(const Output &output) {
  const bool existed = device::status().created;
  device::ensure_booted();
  if (!existed) output.note("created a virtual device in " + device::status().directory.string());
}

void start_agent(const Output &output) {
  boot(output);
  init_parameters();
}

// What a shell may put in the place of a half-typed path: one level further, branches with their ".".
std::set<std::string> continuations(const std::vector<const model::Parameter *> &parameters, size_t typed) {
  std::set<std::string> found;
  for (const model::Parameter *parameter : parameters) {
    const size_t dot = parameter->path.find('.', typed);
    found.emplace(parameter->path.substr(0, dot == std::string_view::npos ? dot : dot + 1));
  }
  return found;
}

ExitStatus show_paths(const Output &output, const std::set<std::string> &paths) {
  if (output.json()) {
    output.print(Json(paths));
    return Success;
  }
  Table table;
  for (const std::string &path : paths)
    table.push_back({{path}});
  output.print(table);
  return Success;
}

ExitStatus show_status(const Output &output) {
  const device::Status status = device::status();
  const char *state = !status.created ? "not created" : status.booted ? "up" : "down";
  const std::string daemon =
      status.serviced ? "running, pid " + std::to_string(*status.serviced) : "not running";
  if (output.json())
    output.print(Json{{"directory", status.directory},
                      {"created", status.created},
                      {"booted", status.booted},
                      {"serviced", status.serviced ? Json(*status.serviced) : Json()}});
  else
    output.print(Table{{{"directory"}, {status.directory.string()}},
                       {{"device"}, {state, Style::Bold}},
                       {{"service daemon"}, {daemon}}});
  return Success;
}

} // namespace

Command on_device(const Command &command) {
  return [command](const Output &output, const Arguments &arguments) {
    boot(output);
    return command(output, arguments);
  };
}

Command on_agent(const Command &command) {
  return [command](const Output &output, const Arguments &arguments) {
    start_agent(output);
    return command(output, arguments);
  };
}

std::vector<Assignment> parsed_assignments(const Arguments &arguments) {
  std::vector<Assignment> assignments;
  for (const std::string &text : arguments.assignments) {
    const size_t equals = text.find('=');
    assignments.push_back({text.substr(0, equals), text.substr(equals + 1)});
  }
  return assignments;
}

std::string assignment_rule(const std::string &text) {
  const size_t equals = text.find('=');
  return equals == 0 || equals == std::string::npos ? "\"" + text + "\" is not of the form NAME=VALUE" : "";
}

std::string number_rule(const std::string &text) {
  const bool digits = text.find_first_not_of("0123456789") == std::string::npos;
  return digits && !text.empty() && text.size() < 10 ? "" : "\"" + text + "\" is not a number";
}

ExitStatus get(const Output &output, const Arguments &arguments) {
  return report(output, get_values(arguments.names));
}

ExitStatus set(const Output &output, const Arguments &arguments) {
  LogReader log(device::log_file());
  log.skip();
  const Setting setting = set_values(parsed_assignments(arguments));
  std::optional<std::vector<Json>> records;
  if (arguments.with_log) {
    await_service();
    records = log.records();
  }
  return report(output, setting, records);
}

ExitStatus list(const Output &output, const Arguments &arguments) {
  const auto all = model::starting_with(arguments.prefix);
  std::vector<const model::Parameter *> wanted(all.begin(), all.end());
  if (arguments.writable_only)
    std::erase_if(wanted, [](const auto *parameter) { return !parameter->writable(); });
  if (arguments.paths_only) return show_paths(output, continuations(wanted, arguments.prefix.size()));
  if (wanted.empty()) return output.failure("no parameter begins with \"" + arguments.prefix + "\"");
  report(output, wanted);
  return Success;
}

Command device_command(void (*act)()) {
  return [act](const Output &output, const Arguments &) {
    if (act) act();
    return show_status(output);
  };
}

} // namespace kova::ctl
