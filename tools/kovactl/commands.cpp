#include "kovactl/commands.hpp"

#include "device/device.hpp"
#include "device/log.hpp"
#include "kovactl/diagnostics_tests.hpp"
#include "kovactl/model_documents.hpp"
#include "kovactl/report.hpp"
#include "request/library_output.hpp"
#include "kovactl/request.hpp"

#include <kova/frame.h>
#include <unistd.h>

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

std::string running(std::optional<pid_t> daemon) {
  return daemon ? "running, pid " + std::to_string(*daemon) : "not running";
}

Json process_id(std::optional<pid_t> daemon) {
  return daemon ? Json(*daemon) : Json();
}

ExitStatus show_status(const Output &output) {
  const device::Status status = device::status();
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
  return Success;
}

// One request at a time.
auto in_turn(const auto &work, device::Turn::Kind kind = device::Turn::Kind::changing) {
  const device::Turn turn(kind);
  const LibraryOutputAside aside;
  return work();
}

// What this process asked for, and nothing that others did meanwhile.
std::vector<Json> own_records(LogReader &log) {
  std::vector<Json> records = log.records();
  std::erase_if(records, [](const Json &record) { return !device::concerns(record, getpid()); });
  return records;
}

std::vector<Assignment> requested_assignments(const Arguments &arguments) {
  std::vector<Assignment> request;
  if (arguments.request_file) request = read_request(*arguments.request_file);
  for (Assignment &assignment : parsed_assignments(arguments))
    request.push_back(std::move(assignment));
  if (request.empty())
    throw UsageError(arguments.request_file ? "the request sets nothing"
                                            : "PATH=VALUE or --file is required; see kovactl set --help");
  return request;
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
  for (const std::string &text : arguments.assignments)
    assignments.push_back(as_assignment(text));
  return assignments;
}

std::string number_rule(const std::string &text) {
  const bool digits = text.find_first_not_of("0123456789") == std::string::npos;
  return digits && !text.empty() && text.size() < 10 ? "" : "\"" + text + "\" is not a number";
}

ExitStatus get(const Output &output, const Arguments &arguments) {
  return report(output, in_turn([&] { return get_values(arguments.names); }, device::Turn::Kind::reading));
}

ExitStatus set(const Output &output, const Arguments &arguments) {
  const std::vector<Assignment> request = requested_assignments(arguments);
  start_agent(output);
  Aftermath aftermath;
  if (arguments.with_tests) {
    aftermath.tests = tests_asked_for(request);
    if (aftermath.tests.empty())
      output.note("the request asks for no diagnostics test: there is nothing to wait for");
  }
  if (!aftermath.tests.empty() && !device::status().serviced)
    return output.failure("no service daemon is running: the test will not start; nothing was stored");

  LogReader log(device::log_file());
  log.skip();
  const Setting setting = in_turn([&] { return set_values(request); });
  if (setting.accepted)
    await_tests(aftermath.tests, std::chrono::seconds(arguments.timeout), output);
  else
    aftermath.tests.clear();
  if (arguments.with_log) {
    await_service();
    aftermath.log = own_records(log);
  }
  return report(output, setting, aftermath);
}

ExitStatus list(const Output &output, const Arguments &arguments) {
  std::vector<Listed> wanted = starting_with(arguments.prefix);
  const bool known = !wanted.empty();
  if (arguments.writable_only) std::erase_if(wanted, [](const Listed &listed) { return !listed.writable(); });
  if (arguments.lists_only)
    std::erase_if(wanted, [](const Listed &l) { return l.path.find("{i}") == std::string_view::npos; });
  if (arguments.paths_only) return show_paths(output, continuations(wanted, arguments.prefix.size()));
  if (wanted.empty()) {
    const std::string likely = known ? "" : likely_path(arguments.prefix);
    return output.failure("no " + std::string(known ? "such " : "") + "parameter begins with \"" +
                          arguments.prefix + "\"" +
                          (likely.empty() ? "" : "; did you mean \"" + likely + "\"?"));
  }
  report(output, wanted);
  return Success;
}

ExitStatus show_model(const Output &output, const Arguments &arguments) {
  const std::string &format = arguments.format;
  if (output.json()) throw UsageError("the model is not written in JSON; kovactl list --json is");
  if (format == "xml")
    output.print_document(device_type_document());
  else if (format == "markdown")
    output.print_document(markdown_page());
  else if (format == "csv") {
    start_agent(output);
    const std::string everything;
    const Reading reading =
        in_turn([&] { return get_values(std::span(&everything, 1)); }, device::Turn::Kind::reading);
    output.print_document(csv_table(reading));
    return complain(output, reading.faults);
  } else
    throw UsageError("--format must be xml, csv or markdown; see kovactl model --help");
  return Success;
}

Command row_command(RowChange (*change)(const std::string &)) {
  return on_agent([change](const Output &output, const Arguments &arguments) {
    LogReader log(device::log_file());
    log.skip();
    const RowChange changed = in_turn([&] { return change(arguments.names.front()); });
    if (!arguments.with_log) return report(output, changed, std::nullopt);
    await_service();
    return report(output, changed, own_records(log));
  });
}

Command device_command(void (*act)()) {
  return [act](const Output &output, const Arguments &) {
    if (act) act();
    return show_status(output);
  };
}

} // namespace kova::ctl
