// Adding and deleting rows of lists.
#include "request/failed_writes.hpp"
#include "request/paths.hpp"
#include "request/reasons.hpp"
#include "request/request.hpp"

namespace kova::request {
namespace {

bool is_full(const model::RowList &list, std::span<const std::string> rows) {
  size_t used = 0;
  for (const std::string &row : rows)
    used += row.size() + 1;
  return list.longest_text != 0 && used >= list.longest_text;
}

Fault no_list(const std::string &object) {
  if (model::branch(object).empty()) return unknown_path(object, likely_path(object));
  return {object, FaultCode::InvalidName, "it is no list; kovactl list --lists shows them"};
}

Fault no_row(const std::string &instance) {
  const auto meant = model::row_at(instance + ".");
  return {instance, FaultCode::InvalidName,
          meant && meant->list->read(meant->index) ? "did you mean \"" + instance + ".\"?"
                                                   : "there is no such row"};
}

// Adds or deletes a row and tells what is wrong with that, if anything.
template <typename Change>
std::optional<Fault> changed(const model::RowList &list, const std::string &path, Change change) {
  const FailedWrites failed_writes;
  forget_reasons();
  if (change() != 0) {
    const std::string why = reason({path, ""});
    return Fault{path, FaultCode::InvalidArguments,
                 "the device refuses it now: " + (why.empty() ? std::string(list.meaning) : why)};
  }
  if (failed_writes.any()) return Fault{path, FaultCode::InternalError, "the device could not store it"};
  return std::nullopt;
}

std::optional<Fault> set_new_row(const model::RowList &list, int index, const std::string &value) {
  const Assignment assignment{list.instance(index) + std::string(list.member()), value};
  const Setting setting = set_values(std::span(&assignment, 1));
  if (setting.accepted) return std::nullopt;
  list.remove.call(index);
  return setting.faults.empty() ? Fault{assignment.path, FaultCode::InvalidValue, ""}
                                : setting.faults.front();
}

constexpr const char *fixed_rows = "its rows cannot be changed";

} // namespace

RowChange add_row(const std::string &object) {
  const model::RowList *list = model::find_list(object);
  if (!list) return {object, 0, no_list(object)};
  const std::vector<std::string> rows = list->rows();
  RowChange change{object, static_cast<int>(rows.size()) + 1, std::nullopt};
  if (!list->writable())
    change.fault = {object, FaultCode::InvalidName, fixed_rows};
  else if (is_full(*list, rows)) // the device would cut the last row rather than refuse
    change.fault = {object, FaultCode::ResourcesExceeded, "there is no room for a further row"};
  else
    change.fault = changed(*list, object, [&] { return list->add.call(); });
  return change;
}

RowChange add_row(const std::string &object, const std::string &value) {
  RowChange change = add_row(object);
  if (!change.fault) change.fault = set_new_row(*model::find_list(object), change.instance, value);
  return change;
}

RowChange delete_row(const std::string &instance) {
  const auto row = model::row_at(instance);
  if (!row || !row->is_branch || !row->list->read(row->index)) return {instance, 0, no_row(instance)};
  RowChange change{std::string(row->list->object()), row->index, std::nullopt};
  if (!row->list->writable())
    change.fault = {instance, FaultCode::InvalidName, fixed_rows};
  else
    change.fault = changed(*row->list, instance, [&] { return row->list->remove.call(row->index); });
  return change;
}

} // namespace kova::request
