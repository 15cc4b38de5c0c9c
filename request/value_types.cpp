#include "request/value_types.hpp"

#include <charconv>
#include <cstdint>
#include <regex>

namespace kova::request {
namespace {

template <typename Integer>
bool is_number(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  Integer number = 0;
  const char *end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, number);
  return parsed.ec == std::errc() && parsed.ptr == end;
}

bool is_date_time(std::string_view text) {
  static const std::regex form(R"(-?\d{4,}-\d\d-\d\dT\d\d:\d\d:\d\d(\.\d+)?(Z|[+-]\d\d:\d\d)?)");
  return std::regex_match(text.begin(), text.end(), form);
}

} // namespace

bool can_be(model::Type type, std::string_view text) {
  if (text.empty()) return true;
  switch (type) {
  case model::Type::Boolean:
    return other_spelling(text).has_value();
  case model::Type::Int:
    return is_number<std::int32_t>(text);
  case model::Type::UnsignedInt:
    return is_number<std::uint32_t>(text);
  case model::Type::DateTime:
    return is_date_time(text);
  case model::Type::String:
  case model::Type::Secret:
  case model::Type::IPAddress:
  case model::Type::MACAddress:
  case model::Type::List:
    return true;
  }
  return true;
}

std::optional<std::string> other_spelling(std::string_view boolean) {
  static constexpr std::string_view spellings[][2] = {{"0", "false"}, {"1", "true"}};
  for (const auto &[digit, word] : spellings) {
    if (boolean == digit) return std::string(word);
    if (boolean == word) return std::string(digit);
  }
  return std::nullopt;
}

} // namespace kova::request
