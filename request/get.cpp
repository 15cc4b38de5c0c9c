// Reading parameters and rows.
#include "request/paths.hpp"
#include "request/request.hpp"

#include <kova/management.h>

namespace kova::request {
namespace {

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

} // namespace

Reading get_values(std::span<const std::string> paths) {
  Reading reading;
  for (const std::string &path : paths) {
    if (const model::Parameter *parameter = model::find(path))
      read_into(reading, *parameter);
    else if (!read_named_row(reading, path) && !read_branch(reading, path))
      reading.faults.push_back(unknown_path(path, likely_path(path)));
  }
  return reading;
}

} // namespace kova::request
