#include "kovactl/request.hpp"

#include "kovactl/output.hpp"
#include "kovactl/paths.hpp"
#include "platform/host/nvram_admin.hpp"
#include "platform/host/tree_admin.hpp"

#include <fcntl.h>
#include <kova/management.h>
#include <kova/transaction.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <unordered_map>

namespace kova::ctl {
namespace {

// Results go to standard output, and nothing else: what the library, and the commands that it runs, print there goes to
// standard error.
class LibraryOutputAside {
public:
  LibraryOutputAside() {
    std::cout.flush();
    std::fflush(stdout);
    results_ = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
    if (results_ >= 0) dup2(STDERR_FILENO, STDOUT_FILENO);
  }
  ~LibraryOutputAside() {
    std::fflush(stdout);
    if (results_ < 0) return;
    dup2(results_, STDOUT_FILENO);
    close(results_);
  }
  LibraryOutputAside(const LibraryOutputAside &) = delete;
  LibraryOutputAside &operator=(const LibraryOutputAside &) = delete;

private:
  int results_;
};

std::string quoted(const std::string &value) {
  return "\"" + shortened(value) + "\"";
}

Fault unknown_path(const std::string &path, const std::string &likely) {
  return {path, FaultCode::InvalidName, likely.empty() ? "" : "did you mean \"" + likely + "\"?"};
}

Fault unknown_parameter(const std::string &path) {
  const std::string likely = likely_path(path);
  return unknown_path(path, likely.ends_with('.') ? "" : likely);
}

// The getter of the log appends all of it, whatever room it is told of.
unsigned int room_for(const model::Parameter &parameter) {
  return parameter.get.call == kovaGetTR069DeviceLog ? 1U << 20 : 4096;
}

void read_into(Reading &reading, const model::Parameter &parameter) {
  const unsigned int room = room_for(parameter);
  std::vector<char> buffer(room + 1); // a getter may leave it untouched, or fill it without a terminator
  if (parameter.get && parameter.get.call(buffer.data(), room) != 0)
    reading.faults.push_back(
        {std::string(parameter.path), FaultCode::InternalError, "the device cannot tell it now"});
  else
    reading.values.push_back({std::string(parameter.path), parameter.type, buffer.data()});
}

void read_row(Reading &reading, const model::RowList &list, int index, const std::string &text) {
  reading.values.push_back({list.instance(index) + std::string(list.member()), model::Type::String, text});
}

void read_list(Reading &reading, const model::RowList &list) {
  int index = 0;
  for (const std::string &text : list.rows())
    read_row(reading, list, ++index, text);
}

// Parameters and rows of a branch, in the order of their paths. False when there is no such branch.
bool read_branch(Reading &reading, const std::string &prefix) {
  const auto members = model::branch(prefix);
  auto member = members.begin();
  bool found = !members.empty();
  for (const model::RowList &list : model::lists()) {
    if (!(prefix.empty() || prefix.ends_with('.')) || !list.object().starts_with(prefix)) continue;
    for (; member != members.end() && (*member)->path < list.path; ++member)
      read_into(reading, **member);
    read_list(reading, list);
    found = true;
  }
  for (; member != members.end(); ++member)
    read_into(reading, **member);
  return found;
}

bool read_named_row(Reading &reading, const std::string &path) {
  const auto row = model::row_at(path);
  const auto text = row ? row->list->read(row->index) : std::nullopt;
  if (text) read_row(reading, *row->list, row->index, *text);
  return text.has_value();
}

bool is_full(const model::RowList &list, std::span<const std::string> rows) {
  size_t used = 0;
  for (const std::string &row : rows)
    used += row.size() + 1;
  return list.longest_text != 0 && used >= list.longest_text;
}

Fault refused(const Assignment &assignment, const std::string &reason = "") {
  return {assignment.path, FaultCode::InvalidValue,
          quoted(assignment.value) + " is refused" + (reason.empty() ? "" : ": " + reason)};
}

std::string reason_of(const model::RowList &list, int code) {
  return list.reason && code > 0 ? list.reason(code) : "";
}

std::optional<Fault> check_row(const model::RowName &row, const std::string &path) {
  if (row.is_branch || !row.list->read(row.index)) return unknown_parameter(path);
  if (!row.list->writable()) return Fault{path, FaultCode::NotWritable, ""};
  return std::nullopt;
}

// Phase 1: each value by itself. An accepted value is parked for the batch validation.
std::vector<Fault> check_each(std::span<const Assignment> request) {
  std::vector<Fault> faults;
  for (const Assignment &assignment : request) {
    const auto &[path, value] = assignment;
    const model::Parameter *parameter = model::find(path);
    if (const auto row = model::row_at(path)) {
      if (auto fault = check_row(*row, path)) faults.push_back(std::move(*fault));
    } else if (!parameter)
      faults.push_back(unknown_parameter(path));
    else if (!parameter->writable())
      faults.push_back({path, FaultCode::NotWritable, ""});
    else if (parameter->check && parameter->check.call(path.c_str(), value.c_str()) != 0)
      faults.push_back(refused(assignment));
  }
  return faults;
}

// Phase 2: the values together.
bool check_together(std::span<const Assignment> request, std::vector<Fault> &faults) {
  size_t size = 256;
  for (const Assignment &assignment : request)
    size += assignment.path.size() + 1;
  std::string names(size, '\0');
  if (kovaCheckTR069ParameterValues(names.data(), static_cast<int>(names.size())) == 0) return true;

  std::string_view rest = names.c_str();
  while (!rest.empty()) {
    const std::string path(rest.substr(0, rest.find(';')));
    rest.remove_prefix(std::min(rest.size(), path.size() + 1));
    const auto given = std::ranges::find(request, path, &Assignment::path);
    const std::string value = given != request.end() ? quoted(given->value) + " " : "";
    faults.push_back({path, FaultCode::InvalidValue, value + "does not go with the other values"});
  }
  return false;
}

unsigned failed_writes() {
  return host::nvram_failed_writes() + host::tree_failed_writes();
}

std::optional<Fault> refused_by_setter(const Assignment &assignment) {
  const auto &[path, value] = assignment;
  if (const auto row = model::row_at(path)) {
    const int code = row->list->set.call(row->index, value.c_str());
    return code == 0 ? std::nullopt : std::optional(refused(assignment, reason_of(*row->list, code)));
  }
  return model::find(path)->set.call(value.c_str()) == 0 ? std::nullopt : std::optional(refused(assignment));
}

std::optional<Fault> store_one(const Assignment &assignment) {
  const unsigned before = failed_writes();
  auto fault = refused_by_setter(assignment);
  if (failed_writes() == before) return fault;
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

} // namespace

std::string_view text(FaultCode code) {
  switch (code) {
  case FaultCode::InternalError:
    return "Internal error";
  case FaultCode::InvalidArguments:
    return "Invalid arguments";
  case FaultCode::ResourcesExceeded:
    return "Resources exceeded";
  case FaultCode::InvalidName:
    return "Invalid parameter name";
  case FaultCode::InvalidValue:
    return "Invalid parameter value";
  case FaultCode::NotWritable:
    return "Attempt to set a non-writable parameter";
  }
  return "";
}

std::vector<Assignment> last_mentions(std::span<const Assignment> request) {
  std::unordered_map<std::string_view, size_t> last;
  for (size_t i = 0; i < request.size(); ++i)
    last[request[i].path] = i;
  std::vector<Assignment> kept;
  for (size_t i = 0; i < request.size(); ++i)
    if (last[request[i].path] == i) kept.push_back(request[i]);
  return kept;
}

Reading get_values(std::span<const std::string> paths) {
  const LibraryOutputAside aside;
  Reading reading;
  for (const std::string &path : paths) {
    if (const model::Parameter *parameter = model::find(path))
      read_into(reading, *parameter);
    else if (!read_named_row(reading, path) && !read_branch(reading, path))
      reading.faults.push_back(unknown_path(path, likely_path(path)));
  }
  return reading;
}

Setting set_values(std::span<const Assignment> given) {
  const LibraryOutputAside aside;
  const std::vector<Assignment> request = last_mentions(given);
  Setting result;
  result.faults = check_each(request);
  if (!result.faults.empty() || !check_together(request, result.faults)) {
    result.not_stored = request;
    return result;
  }
  store_each(request, result);
  result.accepted = result.faults.empty();
  return result;
}

RowChange add_row(const std::string &object) {
  const LibraryOutputAside aside;
  const model::RowList *list = model::find_list(object);
  RowChange change{object, 0, std::nullopt};
  if (!list) {
    change.fault = model::branch(object).empty() ? unknown_path(object, likely_path(object))
                                                 : Fault{object, FaultCode::InvalidName,
                                                         "it is no list; kovactl list --lists shows them"};
    return change;
  }
  const std::vector<std::string> rows = list->rows();
  change.instance = static_cast<int>(rows.size()) + 1;
  if (!list->writable())
    change.fault = {object, FaultCode::InvalidName, "its rows cannot be changed"};
  else if (is_full(*list, rows)) // the device would cut the last row rather than refuse
    change.fault = {object, FaultCode::ResourcesExceeded, "there is no room for a further row"};
  else if (list->add.call() != 0)
    change.fault = {object, FaultCode::InvalidArguments,
                    "the device refuses it now: " + std::string(list->meaning)};
  return change;
}

static std::string no_such_row(const std::string &instance) {
  const auto meant = model::row_at(instance + ".");
  return meant && meant->list->read(meant->index) ? "did you mean \"" + instance + ".\"?"
                                                  : "there is no such row";
}

RowChange delete_row(const std::string &instance) {
  const LibraryOutputAside aside;
  const auto row = model::row_at(instance);
  if (!row || !row->is_branch || !row->list->read(row->index))
    return {instance, 0, Fault{instance, FaultCode::InvalidName, no_such_row(instance)}};
  RowChange change{std::string(row->list->object()), row->index, std::nullopt};
  if (!row->list->writable())
    change.fault = {instance, FaultCode::InvalidName, "its rows cannot be changed"};
  else if (row->list->remove.call(row->index) != 0)
    change.fault = {instance, FaultCode::InvalidArguments,
                    "the device refuses it now: " + std::string(row->list->meaning)};
  else if (failed_writes() != 0)
    change.fault = {instance, FaultCode::InternalError, "the device could not store it"};
  return change;
}

} // namespace kova::ctl
