#include "model/model.hpp"

#include "model/rows.hpp"

#include <algorithm>
#include <vector>

namespace kova::model {
namespace {

constexpr auto path_of = [](const Parameter *parameter) { return parameter->path; };

std::vector<const Parameter *> gather() {
  std::vector<const Parameter *> all;
  for (std::span<const Parameter> family :
       {frame_rows(), lan_rows(), wifi_rows(), wan_rows(), wan_connection_rows(), management_rows(),
        device_info_rows(), time_rows(), radio_rows(), diagnostics_rows(), security_rows(), voice_rows(),
        sas_rows(), accounts_rows()})
    for (const Parameter &row : family)
      all.push_back(&row);
  std::ranges::sort(all, {}, path_of);
  return all;
}

} // namespace

std::span<const Parameter *const> parameters() {
  static const std::vector<const Parameter *> all = gather();
  return all;
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
