#include "agent/values.hpp"

#include "request/value_types.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdio>

namespace kova::agent {
namespace {

using model::Type;

// Of a text that has the form.
bool is_real_date(const std::string &text) {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  std::sscanf(text.c_str(), "%d-%d-%dT%d:%d:%d", &year, &month, &day, &hour, &minute, &second);
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  const bool short_month = month == 4 || month == 6 || month == 9 || month == 11;
  const int days = month == 2 ? (leap ? 29 : 28) : short_month ? 30 : 31;
  return year > 0 && month > 0 && month <= 12 && day > 0 && day <= days && hour < 24 && minute < 60 &&
         second < 60;
}

// The character at the start of the text and its length; length 0 when XML cannot carry it.
std::size_t xml_character_length(std::string_view text) {
  const auto first = static_cast<unsigned char>(text[0]);
  if (first < 0x80) return first >= 0x20 || first == '\t' || first == '\n' || first == '\r' ? 1 : 0;
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < length) return 0;
  std::uint32_t character = first & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xC0U) != 0x80U) return 0;
    character = character << 6 | (byte & 0x3FU);
  }
  constexpr std::uint32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
  const bool none = character == 0xFFFE || character == 0xFFFF || character > 0x10FFFF;
  return character < least[length] || surrogate || none ? 0 : length;
}

constexpr std::string_view secrets[] = {"Password", "Passphrase", "CloudKey"};

std::string formatted(const char *format, const std::tm &time) {
  char text[64];
  return {text, std::strftime(text, sizeof text, format, &time)};
}

} // namespace

std::string wire_type(Type type) {
  switch (type) {
  case Type::Boolean:
  case Type::Int:
  case Type::UnsignedInt:
  case Type::DateTime:
    return "xsd:" + std::string(name(type));
  default:
    return "xsd:string";
  }
}

std::string wire_value(Type type, const std::string &text) {
  const bool is_text = wire_type(type) == "xsd:string";
  if (is_text) return text;
  if (type == Type::DateTime)
    return !text.empty() && request::can_be(type, text) && is_real_date(text) ? text : unknown_time;
  return !text.empty() && request::can_be(type, text) ? text : "0";
}

bool is_true(std::string_view text) {
  return text == "1" || text == "true";
}

std::string xml_text(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const std::size_t length = xml_character_length(text);
    out += length > 0 ? text.substr(0, length) : std::string_view("\xEF\xBF\xBD");
    text.remove_prefix(std::max(length, std::size_t{1}));
  }
  return out;
}

std::string cut(std::string text, std::size_t longest) {
  if (text.size() <= longest) return text;
  while (longest > 0 && (static_cast<unsigned char>(text[longest]) & 0xC0U) == 0x80U)
    --longest;
  text.resize(longest);
  return text;
}

std::string local_time(std::time_t time) {
  std::tm parts{};
  localtime_r(&time, &parts);
  std::string text = formatted("%Y-%m-%dT%H:%M:%S%z", parts);
  return text.insert(text.size() - 2, ":");
}

std::string utc_time(std::time_t time) {
  std::tm parts{};
  gmtime_r(&time, &parts);
  return formatted("%Y-%m-%dT%H:%M:%SZ", parts);
}

bool is_secret(std::string_view path) {
  const std::string_view last = path.substr(path.rfind('.') + 1);
  return std::ranges::any_of(
      secrets, [last](std::string_view word) { return last.find(word) != std::string_view::npos; });
}

} // namespace kova::agent
