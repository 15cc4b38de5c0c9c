// The lists of the device, and their rows by path.
#include "model/tables.hpp"

#include <algorithm>
#include <charconv>
#include <vector>

namespace kova::model {
namespace {

std::vector<RowList> gathered_lists() {
  std::vector<RowList> all;
  for (std::span<const Row> table : tables())
    for (const Row &row : table) {
      if (!row.row_get) continue;
      const std::string_view path = joined({row.object, "{i}.", row.name});
      const std::string_view described =
          row.form.empty() ? row.meaning : joined({row.meaning, ". Row: ", row.form});
      all.push_back({path, row.row_get, row.row_add, row.row_set, row.row_delete, row.reason,
                     row.empty_is_end, row.longest_text, row.form, row.meaning, described});
    }
  std::ranges::sort(all, {}, &RowList::path);
  return all;
}

} // namespace

std::string_view RowList::object() const {
  return path.substr(0, path.find("{i}"));
}

std::string_view RowList::member() const {
  return path.substr(object().size() + std::string_view("{i}.").size());
}

std::string RowList::instance(int index) const {
  return std::string(object()) + std::to_string(index) + ".";
}

std::optional<std::string> RowList::read(int index) const {
  constexpr unsigned int room = 255;
  char row[room + 1] = {};
  if (get.call(index, row, room) != 0 || (empty_is_end && *row == '\0')) return std::nullopt;
  return row;
}

std::vector<std::string> RowList::rows() const {
  std::vector<std::string> found;
  while (const auto row = read(static_cast<int>(found.size()) + 1))
    found.push_back(*row);
  return found;
}

std::span<const RowList> lists() {
  static const std::vector<RowList> all = gathered_lists();
  return all;
}

const RowList *find_list(std::string_view object) {
  const auto all = lists();
  const auto found = std::ranges::find(all, object, &RowList::object);
  return found != all.end() ? &*found : nullptr;
}

std::optional<RowName> row_at(std::string_view path) {
  for (const RowList &list : lists()) {
    if (!path.starts_with(list.object())) continue;
    const std::string_view rest = path.substr(list.object().size());
    RowName name{&list, 0, false};
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), name.index);
    if (error != std::errc() || name.index < 1 || rest[0] == '0') return std::nullopt;
    const std::string_view tail(end, rest.data() + rest.size());
    name.is_branch = tail == ".";
    if (name.is_branch || (tail.starts_with('.') && tail.substr(1) == list.member())) return name;
  }
  return std::nullopt;
}

} // namespace kova::model
