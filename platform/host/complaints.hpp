// Where the web checks leave the reason of a refusal.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#pragma GCC visibility push(default)
namespace kova::host {

void complain(std::string sentence);

} // namespace kova::host
#pragma GCC visibility pop

namespace kova::host {

// The answer of a check that refuses, with its reason in pieces.
inline int complained(int answer, std::initializer_list<std::string_view> pieces) {
  std::string sentence;
  for (const std::string_view piece : pieces)
    sentence += piece;
  complain(std::move(sentence));
  return answer;
}

} // namespace kova::host
