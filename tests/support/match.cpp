#include "support/match.hpp"

#include <map>
#include <regex>

namespace kova::test {

std::vector<std::string> matched(const std::string &text, const std::string &pattern) {
  static std::map<std::string, std::regex> known;
  const auto at = known.try_emplace(pattern, pattern).first;
  std::smatch parts;
  if (!std::regex_match(text, parts, at->second)) return {};
  return {parts.begin(), parts.end()};
}

} // namespace kova::test
