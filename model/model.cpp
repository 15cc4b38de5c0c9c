#include "model/model.hpp"

#include "model/tables.hpp"

#include <algorithm>
#include <deque>
#include <string>
#include <vector>

namespace kova::model {
namespace {

constexpr auto path_of = [](const Parameter *parameter) { return parameter->path; };

Access access_of(const Row &row) {
  if (row.reported) return Access::ReportedOnly;
  return row.settable && !row.agent_set ? Access::ReadWrite : Access::ReadOnly;
}

std::vector<Parameter> gather() {
  std::vector<Parameter> all;
  for (std::span<const Row> table : tables()) {
    std::string_view object;
    for (const Row &row : table) {
      if (row.name.empty())
        object = row.object;
      else if (!row.row_get)
        all.push_back({joined({object, row.name}), row.type, access_of(row), row.get, row.set, row.check,
                       row.unit, row.meaning, row.allowed});
    }
  }
  std::ranges::sort(all, {}, &Parameter::path);
  return all;
}

std::vector<const Parameter *> pointers_to(const std::vector<Parameter> &all) {
  std::vector<const Parameter *> pointers;
  pointers.reserve(all.size());
  for (const Parameter &parameter : all)
    pointers.push_back(&parameter);
  return pointers;
}

} // namespace

std::span<const Parameter *const> parameters() {
  static const std::vector<Parameter> all = gather();
  static const std::vector<const Parameter *> pointers = pointers_to(all);
  return pointers;
}

const Parameter *find(std::string_view path) {
  const auto all = parameters();
  const auto at = std::ranges::lower_bound(all, path, {}, path_of);
  return at != all.end() && (*at)->path == path ? *at : nullptr;
}

std::span<const Parameter *const> branch(std::string_view prefix) {
  if (!prefix.empty() && !prefix.ends_with('.')) return {};
  return starting_with(prefix);
}

std::span<const Parameter *const> starting_with(std::string_view prefix) {
  const auto all = parameters();
  const auto head = [prefix](const Parameter *parameter) { return parameter->path.substr(0, prefix.size()); };
  return {std::ranges::lower_bound(all, prefix, {}, head), std::ranges::upper_bound(all, prefix, {}, head)};
}

std::string_view name(Type type) {
  switch (type) {
  case Type::String:
  case Type::Secret:
    return "string";
  case Type::Boolean:
    return "boolean";
  case Type::Int:
    return "int";
  case Type::UnsignedInt:
    return "unsignedInt";
  case Type::DateTime:
    return "dateTime";
  case Type::IPAddress:
    return "IPAddress";
  case Type::MACAddress:
    return "MACAddress";
  case Type::List:
    return "list";
  }
  return "";
}

std::string_view name(Access access) {
  return access == Access::ReadWrite ? "readWrite" : "readOnly";
}

} // namespace kova::model
