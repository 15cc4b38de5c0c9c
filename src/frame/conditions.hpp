// What a value has to be beside its rule. Each condition tells its bounds to those who only read the tables.
#pragma once

#include "src/frame/text.hpp"

#include <kova/text.h>

#include <climits>
#include <cstdlib>
#include <cstring>

namespace kova {

struct Condition {
  bool (*holds)(const char *value);
  bool takes_empty = false;
  const char *words = nullptr;   // the values that are taken, joined by blanks; nullptr: not a choice
  long least = 0, most = 0;      // of a number; equal: no bounds; LONG_MAX: that of the type
  const char *form = nullptr;    // how a text looks, for a person: "an offset as +05:45"
  const char *pattern = nullptr; // a regular expression of XML Schema that every such text matches
};

template <long least, long most>
bool begins_with_number(const char *value) {
  const int number = leading_number(value); // 0 for a text without a number
  return number >= least && number <= most;
}
inline bool is_digits(const char *value) {
  return value[std::strspn(value, "0123456789")] == '\0';
}

inline bool is_go_ahead(const char *value) {
  return equal(text_or_empty(value), "1");
}

inline constexpr Condition anything = {[](const char *) { return true; }, true};
// No markup and no shell quoting.
inline constexpr Condition unmarked = {
    [](const char *value) { return checkXSSattack(value) >= 0; },
    true,
    nullptr,
    0,
    0,
    "a text without quotes, parentheses, <, >, | and \\, plain or percent-encoded"};
inline constexpr Condition not_empty = {[](const char *value) { return *value != '\0'; }};
// What a trigger takes.
inline constexpr Condition go_ahead = {is_go_ahead, false, "1"};
inline constexpr Condition zero_or_one = {is_zero_or_one, false, "0 1"};
// A number at the beginning is enough: "5 times" is 5.
template <long least, long most>
inline constexpr Condition number_within = {begins_with_number<least, most>, least <= 0, nullptr, least,
                                            most};

} // namespace kova
