// Classes of characters, for rules that judge a text by what it is made of. All are of printable ASCII.
#pragma once

#include <string_view>

namespace kova::host {

constexpr bool is_one_of(std::string_view characters, char c) {
  return characters.find(c) != std::string_view::npos;
}

constexpr bool visible(char c) {
  return c > ' ' && c <= '~';
}

// What a row of a list can hold without ending its field or the row.
constexpr bool visible_in_list(char c) {
  return visible(c) && !is_one_of(",;", c);
}

constexpr bool filter_comment_character(char c) {
  return (visible(c) || c == ' ') && !is_one_of("\"%&'+,:;<>?\\^", c);
}

constexpr bool note_character(char c) {
  return (visible(c) || c == ' ') && !is_one_of(",;\"'`$\\&<>|", c);
}

// "+" for the international prefix; "*" and "#" call services of the network.
constexpr bool dialled_character(char c) {
  return is_one_of("0123456789*#+", c);
}

// The user in a SIP address; a directory number among others.
constexpr bool sip_user_character(char c) {
  const int lower = c | 0x20;
  return (lower >= 'a' && lower <= 'z') || dialled_character(c) || is_one_of("-_.!~", c);
}

// Of addresses of the web, and of words to look for in them.
constexpr bool url_character(char c) {
  return visible(c) && !is_one_of("\"<>\\^`{|}", c);
}

} // namespace kova::host
