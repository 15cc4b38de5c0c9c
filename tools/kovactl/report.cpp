#include "kovactl/report.hpp"

#include "kovactl/addressing.hpp"
#include "kovactl/agent.hpp"
#include "kovactl/log.hpp"
#include "request/allowed.hpp"

#include <algorithm>
#include <sstream>

namespace kova::ctl {
namespace {

Json as_json(const Value &value) {
  return {{"path", value.path}, {"type", model::name(value.type)}, {"value", value.text}};
}

Json as_json(const Assignment &assignment) {
  return {{"path", assignment.path}, {"value", assignment.value}};
}

Json as_json(const Fault &fault) {
  Json json{{"path", fault.path}, {"code", static_cast<int>(fault.code)}, {"text", text(fault.code)}};
  if (!fault.detail.empty()) json["detail"] = fault.detail;
  return json;
}

const model::RowList *list_of(std::string_view path) {
  for (const model::RowList &list : model::lists())
    if (path.starts_with(list.object())) return &list;
  return nullptr;
}

// What it may be set to; of a list the form of its rows.
std::string allowed(const Listed &listed) {
  if (const model::Parameter *parameter = model::find(listed.path)) return allowed_values(*parameter).text;
  const model::RowList *list = list_of(listed.path);
  return list ? std::string(list->form) : "";
}

template <typename Shape>
void add_name(Json &json, const char *what, const model::Accessor<Shape> &accessor) {
  if (accessor) json[what] = accessor.name;
}

Json as_json(const Listed &listed) {
  Json json{{"path", listed.path},
            {"type", model::name(listed.type)},
            {"access", model::name(listed.access)},
            {"unit", listed.unit},
            {"meaning", listed.meaning}};
  if (std::string text = allowed(listed); !text.empty()) json["allowed"] = std::move(text);
  if (const model::Parameter *parameter = model::find(listed.path)) {
    add_name(json, "getter", parameter->get);
    add_name(json, "setter", parameter->set);
    add_name(json, "checker", parameter->check);
  } else if (const model::RowList *list = list_of(listed.path)) {
    add_name(json, "getter", list->get);
    add_name(json, "setter", list->set);
    add_name(json, "add", list->add);
    add_name(json, "delete", list->remove);
  }
  return json;
}

template <typename Range>
Json as_array(const Range &items) {
  Json array = Json::array();
  for (const auto &item : items)
    array.push_back(as_json(item));
  return array;
}

Table as_table(std::span<const Value> values) {
  Table table;
  for (const Value &value : values) {
    std::istringstream lines(value.text); // further lines stand below the first
    std::string line;
    std::getline(lines, line);
    table.push_back({{value.path}, {line, Style::Bold}});
    while (std::getline(lines, line))
      table.push_back({{""}, {line, Style::Bold}});
  }
  return table;
}

Table as_table(std::span<const Assignment> assignments) {
  Table table;
  for (const auto &[path, value] : assignments)
    table.push_back({{"  " + path}, {shortened(value)}});
  return table;
}

Table as_table(std::span<const Fault> faults) {
  Table table;
  for (const Fault &fault : faults)
    table.push_back({{std::to_string(static_cast<int>(fault.code)), Style::Alarm},
                     {std::string(text(fault.code))},
                     {fault.path, Style::Bold},
                     {fault.detail}});
  return table;
}

std::string whole_request_fault() {
  return std::to_string(static_cast<int>(FaultCode::InvalidArguments)) + " " +
         std::string(text(FaultCode::InvalidArguments));
}

void explain_refusal(const Output &output, const Setting &setting) {
  if (setting.stored.empty()) {
    output.failure(whole_request_fault() + ": the request was refused, nothing was stored");
    output.complain(as_table(setting.faults));
    return;
  }
  output.failure(whole_request_fault() + ": the request was stored in part");
  output.complain(as_table(setting.faults));
  output.note("stored:");
  output.complain(as_table(setting.stored));
  output.note("not stored:");
  output.complain(as_table(setting.not_stored));
}

Json refusal_as_json(const Setting &setting) {
  return {{"fault",
           {{"code", static_cast<int>(FaultCode::InvalidArguments)},
            {"text", text(FaultCode::InvalidArguments)}}},
          {"faults", as_array(setting.faults)},
          {"stored", as_array(setting.stored)},
          {"notStored", as_array(setting.not_stored)}};
}

Reading results_of(const DiagnosticsTest &test) {
  return in_turn([&] { return get_values(std::span(&test.object, 1)); }, device::Turn::Kind::reading);
}

Json as_json(const Reading &reading) {
  Json json{{"parameters", as_array(reading.values)}};
  if (!reading.faults.empty()) json["faults"] = as_array(reading.faults);
  return json;
}

Json as_json(const DiagnosticsTest &test) {
  Json json{{"object", test.object},
            {"state", test.state},
            {"seconds", std::chrono::duration<double>(test.duration).count()}};
  if (!test.failure.empty()) json["error"] = test.failure;
  json.update(as_json(results_of(test)));
  return json;
}

Json as_json(const Setting &setting, const Aftermath &aftermath) {
  Json json = setting.accepted ? as_json(aftermath.now) : refusal_as_json(setting);
  for (const DiagnosticsTest &test : aftermath.tests)
    json["tests"].push_back(as_json(test));
  if (aftermath.log) json["log"] = *aftermath.log;
  return json;
}

void append(Reading &reading, const Reading &more) {
  reading.values.insert(reading.values.end(), more.values.begin(), more.values.end());
  reading.faults.insert(reading.faults.end(), more.faults.begin(), more.faults.end());
}

void show(const Output &output, const Setting &setting, const Aftermath &aftermath) {
  if (setting.accepted) {
    output.print(as_table(aftermath.now.values));
    output.complain(as_table(aftermath.now.faults));
  } else
    explain_refusal(output, setting);
  if (aftermath.log) output.print(log_table(*aftermath.log));
  for (const DiagnosticsTest &test : aftermath.tests)
    if (!test.failure.empty()) output.failure(test.failure);
}

} // namespace

Reading read(std::span<const std::string> words) {
  const auto read_all = [&] {
    Addressed found = addressed(words, Kind::anything);
    Reading reading = get_values(found.paths);
    reading.faults.insert(reading.faults.begin(), found.faults.begin(), found.faults.end());
    return reading;
  };
  return in_turn(read_all, device::Turn::Kind::reading);
}

Reading read_back(std::span<const Assignment> assignments) {
  std::vector<std::string> paths;
  for (const Assignment &assignment : assignments)
    paths.push_back(assignment.path);
  return get_values(paths);
}

// A test's object holds what the request set in it, too.
Reading outcome(const Setting &setting, std::span<const DiagnosticsTest> tests) {
  std::vector<Assignment> others = setting.stored;
  for (const DiagnosticsTest &test : tests)
    std::erase_if(others, [&](const Assignment &stored) { return stored.path.starts_with(test.object); });
  Reading reading = in_turn([&] { return read_back(others); }, device::Turn::Kind::reading);
  for (const DiagnosticsTest &test : tests)
    append(reading, results_of(test));
  return reading;
}

ExitStatus report(const Output &output, const Reading &reading, bool values_only) {
  if (!output.json()) {
    if (values_only)
      for (const Value &value : reading.values)
        output.print(Table{{{value.text}}});
    else
      output.print(as_table(reading.values));
    return complain(output, reading.faults);
  }
  output.print(as_json(reading));
  return reading.faults.empty() ? Success : Failure;
}

ExitStatus complain(const Output &output, std::span<const Fault> faults) {
  output.complain(as_table(faults));
  return faults.empty() ? Success : Failure;
}

ExitStatus report(const Output &output, const Setting &setting, const Aftermath &aftermath) {
  if (output.json())
    output.print(as_json(setting, aftermath));
  else
    show(output, setting, aftermath);
  const bool found =
      std::ranges::all_of(aftermath.tests, [](const auto &test) { return test.failure.empty(); });
  return setting.accepted && found ? Success : Failure;
}

ExitStatus report_trial(const Output &output, const Setting &setting) {
  if (!setting.accepted) return report(output, setting, {});
  if (output.json())
    output.print(Json{{"accepted", true}});
  else
    output.print(Table{{{"the request would be accepted; nothing was stored"}}});
  return Success;
}

ExitStatus report(const Output &output, const RowChange &change,
                  const std::optional<std::vector<Json>> &log) {
  if (output.json()) {
    Json json = change.fault ? Json{{"faults", {as_json(*change.fault)}}}
                             : Json{{"object", change.object}, {"instance", change.instance}};
    if (log) json["log"] = *log;
    output.print(json);
  } else if (change.fault)
    output.complain(as_table(std::span(&*change.fault, 1)));
  else
    output.print(Table{{{change.object + std::to_string(change.instance) + "."}}});
  if (!output.json() && log) output.print(log_table(*log));
  return change.fault ? Failure : Success;
}

void report(const Output &output, std::span<const Listed> catalogue) {
  if (output.json()) return output.print(as_array(catalogue));
  Table table{heading({"PATH", "TYPE", "ACCESS", "UNIT", "MEANING", "ALLOWED"})};
  for (const Listed &listed : catalogue)
    table.push_back({{std::string(listed.path), Style::Bold},
                     {std::string(model::name(listed.type))},
                     {std::string(model::name(listed.access))},
                     {std::string(listed.unit)},
                     {std::string(listed.meaning)},
                     {allowed(listed)}});
  output.print_wide(table);
}

} // namespace kova::ctl
