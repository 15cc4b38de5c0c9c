// add, delete: rows of lists.
#include "device/log.hpp"
#include "kovactl/addressing.hpp"
#include "kovactl/agent.hpp"
#include "kovactl/command.hpp"
#include "kovactl/commands.hpp"
#include "kovactl/log.hpp"
#include "kovactl/report.hpp"

namespace kova::ctl {
namespace {

struct RowOptions {
  std::string path;
  std::optional<std::string> value;
  bool with_log = false;
};

template <typename Change>
ExitStatus change_row(const Output &output, const RowOptions &options, Kind kind, Change change) {
  start_agent(output);
  RowChange changed;
  std::optional<std::vector<Json>> log;
  in_turn([&] {
    Addressed found = addressed(std::span(&options.path, 1), kind);
    if (!found.faults.empty()) {
      changed = {options.path, 0, found.faults.front()};
      return;
    }
    LogReader reader(device::log_file());
    reader.skip();
    changed = change(found.paths.front());
    if (!options.with_log) return;
    await_service();
    log = reader.own_records();
  });
  return report(output, changed, log);
}

ExitStatus add(const Output &output, const RowOptions &options) {
  return change_row(output, options, Kind::list, [&](const std::string &object) {
    return options.value ? add_row(object, *options.value) : add_row(object);
  });
}

ExitStatus remove(const Output &output, const RowOptions &options) {
  return change_row(output, options, Kind::row, delete_row);
}

} // namespace

void add_rows(Commands &commands) {
  auto [adding, row] =
      commands.add<RowOptions>("add", "Add a row to a list, with its value or a placeholder", add);
  adding.words("OBJECT.", &row.path, "A list; kovactl list --lists shows them").required();
  adding.words("VALUE", &row.value, "No row is added when it is refused");
  adding.complete([](const std::string &word) { return continued(word, Kind::list, true); });

  auto [deleting, old] =
      commands.add<RowOptions>("delete", "Delete a row of a list; those behind it move up", remove);
  deleting.words("OBJECT.N.", &old.path, "A row of a list").required();
  deleting.complete([](const std::string &word) { return continued(word, Kind::row, true); });

  adding.flag("--log", row.with_log, "Then show what the device was asked to do");
  deleting.flag("--log", old.with_log, "Then show what the device was asked to do");
}

} // namespace kova::ctl
