#include "kovactl/model_documents.hpp"

#include <map>
#include <string_view>

namespace kova::ctl {
namespace {

struct Row {
  bool is_object, writable;
  std::string value;
  std::string_view type; // of XML Schema, without its prefix
};
using Rows = std::map<std::string, Row>;

std::string_view schema_type(model::Type type) {
  switch (type) {
  case model::Type::Secret:
  case model::Type::IPAddress:
  case model::Type::MACAddress:
  case model::Type::List:
    return name(model::Type::String);
  default:
    return name(type);
  }
}

// As RFC 4180 has it.
std::string csv_quoted(const std::string &field) {
  if (field.find_first_of(",\"\r\n") == std::string::npos) return field;
  std::string text = "\"";
  for (const char c : field)
    text.append(c == '"' ? 2 : 1, c);
  return text + "\"";
}

// A list, or a row of one, that can change.
bool is_writable_object(const std::string &branch) {
  const model::RowList *list = model::find_list(branch);
  if (const auto row = model::row_at(branch)) list = row->list;
  return list && list->writable();
}

void add_objects(Rows &rows, const std::string &path) {
  for (size_t dot = path.find('.'); dot != std::string::npos; dot = path.find('.', dot + 1))
    rows.try_emplace(path.substr(0, dot), Row{true, is_writable_object(path.substr(0, dot + 1)), "", ""});
}

void add_parameter(Rows &rows, const std::string &path, const std::string &value) {
  const auto row = model::row_at(path);
  const model::Parameter *parameter = row ? nullptr : model::find(path);
  rows[path] = {false, parameter ? parameter->writable() : row->list->writable(), value,
                schema_type(parameter ? parameter->type : model::Type::String)};
  add_objects(rows, path);
}

} // namespace

std::string csv_table(const Reading &everything) {
  Rows rows;
  for (const Value &value : everything.values)
    add_parameter(rows, value.path, value.text);
  for (const Fault &fault : everything.faults)
    add_parameter(rows, fault.path, "");
  for (const model::RowList &list : model::lists()) // those without rows, too
    add_objects(rows, std::string(list.object()));

  std::string text = "Parameter,Object,Writable,Value,Value type\n";
  for (const auto &[path, row] : rows) {
    text += path + (row.is_object ? ",true" : ",false") + (row.writable ? ",true," : ",false,");
    text += csv_quoted(row.value) + (row.is_object ? "," : ",xsd:") + std::string(row.type) + "\n";
  }
  return text;
}

} // namespace kova::ctl
