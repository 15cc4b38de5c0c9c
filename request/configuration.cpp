#include "request/configuration.hpp"

#include "request/interlocks.hpp"

#include <algorithm>
#include <utility>

namespace kova::request {
namespace {

bool is_setting(const Value &value) {
  const model::Parameter *parameter = model::find(value.path);
  if (!parameter) return true; // a row
  return parameter->writable() && parameter->get && parameter->type != model::Type::Secret &&
         !acts(value.path);
}

bool is_blank(const std::string &text) {
  return text.find_first_not_of(' ') == std::string::npos;
}

} // namespace

bool acts(const std::string &path) {
  return path.ends_with(".DiagnosticsState") || path.ends_with("Apply") ||
         path.ends_with(".X_KOVA_HostCheck") || path.ends_with(".X_KOVA_InterfaceCheck");
}

Configuration get_configuration(const std::string &prefix) {
  const std::string everything;
  const Reading reading = get_values(std::span(&everything, 1));
  Configuration found;
  std::vector<Assignment> rows;
  for (const Value &value : reading.values) {
    const auto row = model::row_at(value.path);
    if (!value.path.starts_with(prefix) || !is_setting(value) || is_blank(value.text) ||
        (row && !row->list->writable()))
      continue;
    if (const auto closed = interlock_of(value.path))
      found.left_out.push_back({value.path, FaultCode::InvalidValue, *closed});
    else
      (row ? rows : found.values).push_back({value.path, value.text});
  }
  std::ranges::stable_sort(found.values, {}, [](const Assignment &value) {
    return std::pair(!model::find(value.path)->check, interlocks_ahead_of(value.path));
  });
  found.values.insert(found.values.end(), rows.begin(), rows.end());
  return found;
}

} // namespace kova::request
