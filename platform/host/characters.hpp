// Classes of characters, for rules that judge a text by what it is made of. All are of printable ASCII.
#pragma once

#include <string_view>

namespace kova::host {

constexpr bool is_one_of(std::string_view characters, char c) {
  return characters.find(c) != std::string_view::npos;
}
constexpr bool is_printable(char c) {
  return c >= ' ' && c <= '~';
}
constexpr bool is_visible(char c) {
  return c > ' ' && c <= '~';
}
constexpr bool is_digit(char c) {
  return c >= '0' && c <= '9';
}
constexpr bool is_letter(char c) {
  const int lower = c | 0x20;
  return lower >= 'a' && lower <= 'z';
}

struct CharacterClass {
  std::string_view name; // of many
  bool (*holds)(char);
};

inline constexpr CharacterClass printable{"printable characters", is_printable};
inline constexpr CharacterClass visible{"printable characters without blanks", is_visible};
// What a row of a list can hold without ending its field or the row.
inline constexpr CharacterClass visible_in_list{"printable characters without blanks, commas and semicolons",
                                                [](char c) { return is_visible(c) && !is_one_of(",;", c); }};
inline constexpr CharacterClass filter_comment_character{
    R"(printable characters without "%&'+,:;<>?\^)",
    [](char c) { return is_printable(c) && !is_one_of("\"%&'+,:;<>?\\^", c); }};
inline constexpr CharacterClass note_character{R"(printable characters without ,;"'`$\&<>|)", [](char c) {
                                                 return is_printable(c) && !is_one_of(",;\"'`$\\&<>|", c);
                                               }};
inline constexpr CharacterClass host_name_character{
    "letters, digits and ._-", [](char c) { return is_letter(c) || is_digit(c) || is_one_of("._-", c); }};
// "+" for the international prefix; "*" and "#" call services of the network.
inline constexpr CharacterClass dialled_character{"digits and *#+",
                                                  [](char c) { return is_digit(c) || is_one_of("*#+", c); }};
// The user in a SIP address; a directory number among others.
inline constexpr CharacterClass sip_user_character{"letters, digits and *#+-_.!~", [](char c) {
                                                     return is_letter(c) || is_digit(c) ||
                                                            is_one_of("*#+-_.!~", c);
                                                   }};
// Of addresses of the web, and of words to look for in them.
inline constexpr CharacterClass url_character{
    "characters of a URL", [](char c) { return is_visible(c) && !is_one_of("\"<>\\^`{|}", c); }};
inline constexpr CharacterClass hex_digit{"hexadecimal digits",
                                          [](char c) { return is_digit(c) || is_one_of("abcdefABCDEF", c); }};

} // namespace kova::host
