// set: changes parameters in one request.
#include "device/log.hpp"
#include "kovactl/addressing.hpp"
#include "kovactl/agent.hpp"
#include "kovactl/command.hpp"
#include "kovactl/commands.hpp"
#include "kovactl/diagnostics_tests.hpp"
#include "kovactl/inform.hpp"
#include "kovactl/log.hpp"
#include "kovactl/report.hpp"
#include "kovactl/trial.hpp"
#include "request/configuration.hpp"

#include <algorithm>

namespace kova::ctl {
namespace {

struct SetOptions {
  std::vector<std::string> assignments; // PATH=VALUE
  std::optional<std::string> file;
  bool skip_read_only = false, dry_run = false, with_log = false, with_tests = false;
  int timeout = 120;
};

std::vector<Assignment> requested(const SetOptions &options) {
  std::vector<Assignment> request;
  if (options.file) request = read_request(*options.file);
  for (const std::string &text : options.assignments)
    request.push_back(as_assignment(text));
  if (request.empty())
    throw UsageError(options.file ? "the request sets nothing"
                                  : "PATH=VALUE or --file is required; see kovactl set --help");
  return request;
}

// What cannot be set goes from the file's values; those of the command line, which follow, stay.
void skip_in_file(std::vector<Assignment> &request, size_t typed) {
  const auto end = request.end() - static_cast<std::ptrdiff_t>(typed);
  std::vector<Assignment> kept = settings_among({request.begin(), end});
  kept.insert(kept.end(), end, request.end());
  request = std::move(kept);
}

// With their paths whole.
std::vector<Fault> complete_paths(std::vector<Assignment> &request) {
  std::vector<Fault> faults;
  for (Assignment &assignment : request) {
    Addressed found = addressed(std::span(&assignment.path, 1), Kind::parameter);
    if (found.faults.empty())
      assignment.path = found.paths.front();
    else
      faults.push_back(std::move(found.faults.front()));
  }
  return faults;
}

// The rows that a file names and that are not there yet, as those of another device.
std::vector<Assignment> take_new_rows(std::vector<Assignment> &request) {
  std::vector<Assignment> rows;
  std::erase_if(request, [&](const Assignment &assignment) {
    const auto row = model::row_at(assignment.path);
    const bool is_new = row && !row->is_branch && row->list->writable() && !row->list->read(row->index);
    if (is_new) rows.push_back(assignment);
    return is_new;
  });
  return rows;
}

void add_new_rows(std::span<const Assignment> rows, Setting &result) {
  for (const Assignment &row : rows) {
    if (result.accepted) {
      const RowChange change = add_row(std::string(model::row_at(row.path)->list->object()), row.value);
      if (change.fault) result.faults.push_back(*change.fault);
      result.accepted = !change.fault;
    }
    (result.accepted ? result.stored : result.not_stored).push_back(row);
  }
}

Setting carry_out(std::vector<Assignment> request, bool from_file) {
  Setting result;
  result.faults = complete_paths(request);
  if (!result.faults.empty()) {
    result.not_stored = std::move(request);
    return result;
  }
  const std::vector<Assignment> rows = from_file ? take_new_rows(request) : std::vector<Assignment>();
  result = set_values(request);
  add_new_rows(rows, result);
  return result;
}

ExitStatus try_out(const Output &output, const SetOptions &options, const std::vector<Assignment> &request) {
  const Trial trial;
  return report_trial(output, in_turn([&] { return carry_out(request, options.file.has_value()); }));
}

ExitStatus set(const Output &output, const SetOptions &options) {
  std::vector<Assignment> request = requested(options);
  start_agent(output);
  in_turn(
      [&] {
        complete_paths(request); // what it cannot is a fault of the request
        if (options.skip_read_only) skip_in_file(request, options.assignments.size());
      },
      device::Turn::Kind::reading);
  if (options.dry_run) return try_out(output, options, request);

  Aftermath aftermath;
  if (options.with_tests) {
    aftermath.tests = tests_asked_for(request);
    if (aftermath.tests.empty())
      output.note("the request asks for no diagnostics test: there is nothing to wait for");
  }
  const bool served = device::status().serviced.has_value();
  if (!aftermath.tests.empty() && !served)
    return output.failure("no service daemon is running: the test will not start; nothing was stored");

  Setting setting;
  LogReader log(device::log_file());
  in_turn([&] {
    log.skip();
    setting = carry_out(request, options.file.has_value());
    if (setting.accepted && aftermath.tests.empty()) aftermath.now = read_back(setting.stored);
  });
  follow_management_url(setting.stored);
  if (!served && !setting.stored.empty())
    output.note("the service daemon is not running: no service heard of this; kovactl device up starts it");
  if (setting.accepted)
    await_tests(aftermath.tests, std::chrono::seconds(options.timeout), output);
  else
    aftermath.tests.clear();
  if (!aftermath.tests.empty())
    aftermath.now = output.json() ? outcome(setting, {}) : outcome(setting, aftermath.tests);
  if (options.with_log) {
    await_service();
    aftermath.log = log.own_records();
  }
  return report(output, setting, aftermath);
}

} // namespace

void add_set(Commands &commands) {
  auto [command, options] = commands.add<SetOptions>("set", "Change parameters in one request", set);
  command.words("PATH=VALUE", &options.assignments, "These come after those of --file")
      .check(assignment_rule);
  const Option file =
      command.option("--file", "FILE", &options.file,
                     "Take the request from FILE, \"-\" is standard input: one PATH=VALUE a line, or JSON");
  command
      .flag("--skip-read-only", options.skip_read_only,
            "Leave out what FILE has that cannot be set: only read, empty, or closed by another value")
      .needs(file);
  const Option dry =
      command.flag("--dry-run", options.dry_run,
                   "Only tell whether the request would be accepted: try it on a copy of the device");
  command.flag("--log", options.with_log, "Then show what the device was asked to do").excludes(dry);
  const Option wait =
      command.flag("--wait", options.with_tests, "Wait for the diagnostics tests that the request asks for");
  wait.excludes(dry);
  command.option("--timeout", "SECONDS", &options.timeout, "Wait so long at most (default: 120)")
      .needs(wait)
      .check(number_rule);
  command.complete(complete_assignment);
}

} // namespace kova::ctl
