// Regular expressions for tests, compiled once for all of them: what the standard library's headers cost is not small.
#pragma once

#include <string>
#include <vector>

namespace kova::test {

// The text and the pattern's groups; empty where the whole text is not of that form.
std::vector<std::string> matched(const std::string &text, const std::string &pattern);

inline bool matches(const std::string &text, const std::string &pattern) {
  return !matched(text, pattern).empty();
}

} // namespace kova::test
