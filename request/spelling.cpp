#include "request/spelling.hpp"

#include <algorithm>
#include <cctype>

namespace kova::request {
namespace {

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

} // namespace

std::string lower(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), [](unsigned char c) { return std::tolower(c); });
  return result;
}

std::string likely_name(std::string_view typed, const std::vector<std::string> &names) {
  std::string best;
  size_t fewest = most_slips + 1;
  for (const std::string &name : names) {
    const size_t count = distance(typed, name);
    if (count < fewest) best = name;
    fewest = std::min(fewest, count);
  }
  return best;
}

} // namespace kova::request
