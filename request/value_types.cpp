#include "request/value_types.hpp"

#include <regex.h>

#include <charconv>
#include <cstdint>

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
  static const regex_t form = [] {
    regex_t compiled{};
    regcomp(&compiled,
            "^-?[0-9]{4,}(-[0-9]{2}){2}T[0-9]{2}(:[0-9]{2}){2}(\\.[0-9]+)?(Z|[+-][0-9]{2}:[0-9]{2})?$",
            REG_EXTENDED | REG_NOSUB);
    return compiled;
  }();
  return regexec(&form, std::string(text).c_str(), 0, nullptr, 0) == 0;
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
