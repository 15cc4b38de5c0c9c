// Texts that callers in C hand over.
#pragma once

#include <string_view>

namespace kova::host {

// NULL is an empty text.
constexpr std::string_view text_of(const char *text) {
  return text == nullptr ? "" : text;
}

} // namespace kova::host
