// Setting parameters and rows, in three phases.
#include "request/failed_writes.hpp"
#include "request/paths.hpp"
#include "request/pending_values.hpp"
#include "request/reasons.hpp"
#include "request/request.hpp"
#include "request/shortened.hpp"
#include "request/value_types.hpp"

#include <kova/transaction.h>

#include <algorithm>
#include <unordered_map>

namespace kova::request {
namespace {

Fault refused(const Assignment &assignment, std::string why = "") {
  if (why.empty()) why = reason(assignment);
  return {assignment.path, FaultCode::InvalidValue,
          quoted(assignment.value) + " is refused" + (why.empty() ? "" : ": " + why)};
}

std::optional<Fault> check_row(const model::RowName &row, const std::string &path) {
  if (row.is_branch || !row.list->read(row.index)) return unknown_parameter(path);
  if (!row.list->writable()) return Fault{path, FaultCode::NotWritable, ""};
  return std::nullopt;
}

// Most accessors of booleans take the digits, some the words, and some would store any text. One that refuses a value does
// nothing, so that it may be asked again: with the spelling that it takes, which is then what the request holds.
template <typename Accepts>
bool accepted_in_a_spelling(model::Type type, std::string &value, Accepts accepts) {
  const auto other = type == model::Type::Boolean ? other_spelling(value) : std::nullopt;
  if (!other) return accepts(value);
  const bool is_digit = value.size() == 1;
  for (const std::string &spelling : {is_digit ? value : *other, is_digit ? *other : value})
    if (accepts(spelling)) {
      value = spelling;
      return true;
    }
  return false;
}

std::optional<Fault> check(const model::Parameter &parameter, Assignment &assignment) {
  const auto &[path, value] = assignment;
  if (!parameter.writable()) return Fault{path, FaultCode::NotWritable, ""};
  if (!can_be(parameter.type, value))
    return Fault{path, FaultCode::InvalidType,
                 quoted(value) + " is no " + std::string(model::name(parameter.type))};
  const bool passes = !parameter.check ||
                      accepted_in_a_spelling(parameter.type, assignment.value, [&](const std::string &text) {
                        return parameter.check.call(assignment.path.c_str(), text.c_str()) == 0;
                      });
  return passes ? std::nullopt : std::optional(refused(assignment));
}

// Phase 1: each value by itself. An accepted value is parked for the batch validation.
std::vector<Fault> check_each(std::span<Assignment> request) {
  std::vector<Fault> faults;
  for (Assignment &assignment : request) {
    forget_reasons();
    const std::string &path = assignment.path;
    std::optional<Fault> fault;
    if (const auto row = model::row_at(path))
      fault = check_row(*row, path);
    else if (const model::Parameter *parameter = model::find(path))
      fault = check(*parameter, assignment);
    else
      fault = unknown_parameter(path);
    if (fault) faults.push_back(std::move(*fault));
  }
  return faults;
}

// Phase 2: the values together.
bool check_together(std::span<const Assignment> request, std::vector<Fault> &faults) {
  size_t size = 256;
  for (const Assignment &assignment : request)
    size += assignment.path.size() + 1;
  std::string names(size, '\0');
  forget_reasons();
  if (kovaCheckTR069ParameterValues(names.data(), static_cast<int>(names.size())) == 0) return true;

  std::string why;
  std::string_view rest = names.c_str();
  while (!rest.empty()) {
    const std::string path(rest.substr(0, rest.find(';')));
    rest.remove_prefix(std::min(rest.size(), path.size() + 1));
    if (faults.empty()) why = reason_of_combination(request, path);
    const auto given = std::ranges::find(request, path, &Assignment::path);
    const std::string value = given != request.end() ? quoted(given->value) + " " : "";
    faults.push_back({path, FaultCode::InvalidValue,
                      value + "does not go with the other values" + (why.empty() ? "" : ": " + why)});
  }
  return false;
}

std::optional<Fault> refused_by_setter(const Assignment &assignment) {
  const auto &[path, value] = assignment;
  if (const auto row = model::row_at(path)) {
    const int code = row->list->set.call(row->index, value.c_str());
    if (code == 0) return std::nullopt;
    return refused(assignment, row->list->reason && code > 0 ? row->list->reason(code) : "");
  }
  const model::Parameter &parameter = *model::find(path);
  std::string given = value;
  const bool taken = accepted_in_a_spelling(
      parameter.type, given, [&](const std::string &text) { return parameter.set.call(text.c_str()) == 0; });
  return taken ? std::nullopt : std::optional(refused(assignment));
}

std::optional<Fault> store_one(const Assignment &assignment) {
  const FailedWrites failed_writes;
  forget_reasons();
  auto fault = refused_by_setter(assignment);
  if (!failed_writes.any()) return fault;
  return Fault{assignment.path, FaultCode::InternalError, "the device could not store it"};
}

// Phase 3: stores in order, up to the first refusal.
void store_each(std::span<const Assignment> request, Setting &result) {
  for (const Assignment &assignment : request) {
    if (auto fault = result.faults.empty() ? store_one(assignment) : std::nullopt)
      result.faults.push_back(std::move(*fault));
    (result.faults.empty() ? result.stored : result.not_stored).push_back(assignment);
  }
}

// The parameter for which the device waits before it puts into force what was stored at this path; "" when it does not.
std::string apply_parameter(std::string_view path) {
  while (!path.empty()) {
    const size_t dot = path.substr(0, path.size() - 1).rfind('.');
    path = path.substr(0, dot == std::string_view::npos ? 0 : dot + 1);
    for (const char *name : {"X_KOVA_Apply", "Apply"})
      if (const model::Parameter *found = model::find(std::string(path) + name))
        return std::string(found->path);
  }
  return "";
}

bool in_force(std::span<const Assignment> stored) {
  return std::ranges::all_of(stored, [&](const Assignment &assignment) {
    const std::string apply = apply_parameter(assignment.path);
    return apply.empty() || std::ranges::find(stored, apply, &Assignment::path) != stored.end();
  });
}

} // namespace

std::vector<Assignment> last_mentions(std::span<const Assignment> request) {
  std::unordered_map<std::string_view, size_t> last;
  for (size_t i = 0; i < request.size(); ++i)
    last[request[i].path] = i;
  std::vector<Assignment> kept;
  for (size_t i = 0; i < request.size(); ++i)
    if (last[request[i].path] == i) kept.push_back(request[i]);
  return kept;
}

Setting set_values(std::span<const Assignment> given) {
  std::vector<Assignment> request = last_mentions(given);
  Setting result;
  result.faults = check_each(request);
  if (!result.faults.empty() || !check_together(request, result.faults)) {
    forget_pending_values();
    forget_reasons();
    result.not_stored = last_mentions(given);
    return result;
  }
  store_each(request, result);
  result.accepted = result.faults.empty();
  result.applied = in_force(result.stored);
  return result;
}

} // namespace kova::request
