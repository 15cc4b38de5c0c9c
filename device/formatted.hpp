// A short text by a format of printf.
#pragma once

#include <cstdio>
#include <string>

namespace kova::device {

// Cut at 255 characters.
template <typename... Arguments>
std::string formatted(const char *format, Arguments... arguments) {
  char text[256];
  std::snprintf(text, sizeof text, format, arguments...);
  return text;
}

} // namespace kova::device
