// Numbers as texts.
#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace kova::host {

// Of a text that is a decimal number of this type and nothing else.
template <class Integer>
std::optional<Integer> whole_number(std::string_view text) {
  Integer number = 0;
  const char *end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, number);
  if (parsed.ec != std::errc() || parsed.ptr != end) return std::nullopt;
  return number;
}

} // namespace kova::host
