#include "kovactl/paths.hpp"

#include <algorithm>
#include <cctype>
#include <vector>

namespace kova::ctl {
namespace {

std::string lower(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), [](unsigned char c) { return std::tolower(c); });
  return result;
}

// How many characters were left out, put in, replaced or swapped with their neighbour.
size_t slips(const std::string &typed, const std::string &name) {
  std::vector<std::vector<size_t>> table(typed.size() + 1, std::vector<size_t>(name.size() + 1));
  for (size_t i = 0; i <= typed.size(); ++i)
    for (size_t j = 0; j <= name.size(); ++j) {
      if (i == 0 || j == 0) {
        table[i][j] = i + j;
        continue;
      }
      const size_t replaced = table[i - 1][j - 1] + (typed[i - 1] == name[j - 1] ? 0 : 1);
      table[i][j] = std::min({table[i - 1][j] + 1, table[i][j - 1] + 1, replaced});
      if (i > 1 && j > 1 && typed[i - 1] == name[j - 2] && typed[i - 2] == name[j - 1])
        table[i][j] = std::min(table[i][j], table[i - 2][j - 2] + 1);
    }
  return table[typed.size()][name.size()];
}

// 0 for the same name in any case; more than `most_slips` for another name.
constexpr size_t most_slips = 2;

size_t distance(std::string_view typed, std::string_view name) {
  const std::string one = lower(typed), other = lower(name);
  if (one == other) return 0;
  const bool instance = std::ranges::all_of(one, [](unsigned char c) { return std::isdigit(c) != 0; });
  const size_t difference = std::max(one.size(), other.size()) - std::min(one.size(), other.size());
  if (instance || one.size() < 3) return most_slips + 1;
  if (other.starts_with(one)) return most_slips;
  return difference > most_slips ? most_slips + 1 : slips(one, other);
}

// The member of the branch that is most like the name, or "".
std::string likely_member(const std::string &branch, std::string_view name) {
  std::string best;
  size_t fewest = most_slips + 1;
  for (const std::string &member : continuations(starting_with(branch), branch.size())) {
    std::string_view own_name = std::string_view(member).substr(branch.size());
    if (own_name.ends_with('.')) own_name.remove_suffix(1);
    const size_t count = distance(name, own_name);
    if (count < fewest) best = member;
    fewest = std::min(fewest, count);
  }
  return best;
}

} // namespace

std::vector<Listed> starting_with(std::string_view prefix) {
  std::vector<Listed> found;
  for (const model::Parameter *parameter : model::starting_with(prefix))
    found.push_back(
        {parameter->path, parameter->type, parameter->access, parameter->unit, parameter->meaning});
  for (const model::RowList &list : model::lists()) {
    const auto access = list.writable() ? model::Access::ReadWrite : model::Access::ReadOnly;
    if (list.path.starts_with(prefix))
      found.push_back({list.path, model::Type::String, access, "", list.described});
  }
  std::ranges::sort(found, {}, &Listed::path);
  return found;
}

std::set<std::string> continuations(std::span<const Listed> catalogue, size_t typed) {
  std::set<std::string> found;
  for (const Listed &listed : catalogue) {
    const size_t dot = listed.path.find('.', typed);
    const std::string_view next = listed.path.substr(0, dot == std::string_view::npos ? dot : dot + 1);
    if (next.find("{i}") == std::string_view::npos) found.emplace(next);
  }
  return found;
}

std::string likely_path(std::string_view path) {
  std::string found;
  while (!path.empty()) {
    const std::string_view name = path.substr(0, path.find('.'));
    path.remove_prefix(std::min(path.size(), name.size() + 1));
    if (!found.empty() && !found.ends_with('.')) return ""; // a parameter has no members
    found = likely_member(found, name);
    if (found.empty()) return "";
  }
  return found;
}

} // namespace kova::ctl
