// Numbers as texts.
#pragma once

#include "src/frame/text.hpp"

#include <cstdio>

namespace kova {

struct NumberText {
  char chars[24];
  explicit NumberText(long number) { std::snprintf(chars, sizeof chars, "%ld", number); }
  operator const char *() const { return chars; }
};

inline int answer_number(long number, char *buf, unsigned int buflen) {
  return answer(NumberText(number), buf, buflen);
}

} // namespace kova
