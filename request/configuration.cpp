#include "request/configuration.hpp"

#include "request/interlocks.hpp"

#include <algorithm>
#include <map>
#include <tuple>

namespace kova::request {
namespace {

bool is_blank(const std::string &text) {
  return text.find_first_not_of(' ') == std::string::npos;
}

// What no parameter and no row has is left to those who refuse it.
bool is_setting(const Assignment &value) {
  const auto row = model::row_at(value.path);
  if (row) return row->list->writable() && !is_blank(value.value);
  const model::Parameter *parameter = model::find(value.path);
  return !parameter ||
         (parameter->writable() && parameter->get && !acts(value.path) && !is_blank(value.value));
}

bool is_secret(const std::string &path) {
  const model::Parameter *parameter = model::find(path);
  return parameter && parameter->type == model::Type::Secret;
}

// First what is judged together, then each behind what opens it, rows last.
void bring_in_order(std::vector<Assignment> &values) {
  std::ranges::stable_sort(values, {}, [](const Assignment &value) {
    const model::Parameter *parameter = model::find(value.path);
    return std::tuple(!parameter, parameter && !parameter->check, interlocks_ahead_of(value.path));
  });
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
  for (const Value &value : reading.values) {
    const Assignment given{value.path, value.text};
    if (!value.path.starts_with(prefix) || !is_setting(given) || is_secret(value.path)) continue;
    if (const auto closed = interlock_of(value.path))
      found.left_out.push_back({value.path, FaultCode::InvalidValue, *closed});
    else
      found.values.push_back(given);
  }
  bring_in_order(found.values);
  return found;
}

std::vector<Assignment> settings_among(std::vector<Assignment> values) {
  std::map<std::string, std::string> given;
  for (const auto &[path, value] : values)
    given[path] = value;
  std::erase_if(values, [&given](const Assignment &value) {
    return !is_setting(value) || interlock_of(value.path, &given);
  });
  bring_in_order(values);
  return values;
}

} // namespace kova::request
