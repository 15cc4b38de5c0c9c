#include "kovactl/report.hpp"

#include "kovactl/device_log.hpp"

#include <sstream>

namespace kova::ctl {
namespace {

Json as_json(const Value &value) {
  return {
      {"path", value.parameter->path}, {"type", model::name(value.parameter->type)}, {"value", value.text}};
}

Json as_json(const Assignment &assignment) {
  return {{"path", assignment.path}, {"value", assignment.value}};
}

Json as_json(const Fault &fault) {
  Json json{{"path", fault.path}, {"code", static_cast<int>(fault.code)}, {"text", text(fault.code)}};
  if (!fault.detail.empty()) json["detail"] = fault.detail;
  return json;
}

Json as_json(const model::Parameter &parameter) {
  return {{"path", parameter.path},
          {"type", model::name(parameter.type)},
          {"access", model::name(parameter.access)},
          {"unit", parameter.unit},
          {"meaning", parameter.meaning}};
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
    table.push_back({{std::string(value.parameter->path)}, {line, Style::Bold}});
    while (std::getline(lines, line))
      table.push_back({{""}, {line, Style::Bold}});
  }
  return table;
}

Table as_table(std::span<const Assignment> assignments) {
  Table table;
  for (const auto &[path, value] : assignments)
    table.push_back({{"  " + path}, {value}});
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

std::vector<std::string> paths_of(std::span<const Assignment> assignments) {
  std::vector<std::string> paths;
  for (const Assignment &assignment : assignments)
    paths.push_back(assignment.path);
  return paths;
}

} // namespace

ExitStatus report(const Output &output, const Reading &reading) {
  if (output.json()) {
    Json json{{"parameters", as_array(reading.values)}};
    if (!reading.faults.empty()) json["faults"] = as_array(reading.faults);
    output.print(json);
  } else {
    output.print(as_table(reading.values));
    output.complain(as_table(reading.faults));
  }
  return reading.faults.empty() ? Success : Failure;
}

ExitStatus report(const Output &output, const Setting &setting,
                  const std::optional<std::vector<Json>> &records) {
  const Reading now = setting.accepted ? get_values(paths_of(setting.stored)) : Reading{};
  if (output.json()) {
    Json json = setting.accepted ? Json{{"parameters", as_array(now.values)}} : refusal_as_json(setting);
    if (records) json["log"] = *records;
    output.print(json);
  } else {
    if (setting.accepted)
      output.print(as_table(now.values));
    else
      explain_refusal(output, setting);
    if (records) output.print(as_table(*records));
  }
  return setting.accepted ? Success : Failure;
}

void report(const Output &output, std::span<const model::Parameter *const> parameters) {
  if (output.json()) {
    Json array = Json::array();
    for (const model::Parameter *parameter : parameters)
      array.push_back(as_json(*parameter));
    return output.print(array);
  }
  Table table;
  for (const model::Parameter *parameter : parameters)
    table.push_back({{std::string(parameter->path), Style::Bold},
                     {std::string(model::name(parameter->type))},
                     {std::string(model::name(parameter->access))},
                     {std::string(parameter->unit)},
                     {std::string(parameter->meaning)}});
  output.print(table);
}

} // namespace kova::ctl
