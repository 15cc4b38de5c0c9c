// Texts: the scratch type that values are exchanged through, and the one way out to a caller's buffer.
#pragma once

#include <concepts>
#include <cstdlib>
#include <cstring>

namespace kova {

// A value read from a store: at most 255 characters, zeroed before each read.
struct Text {
  static constexpr int size = 256;
  enum Unset { unset };
  char chars[size];

  Text() : chars{} {}
  explicit Text(Unset) {} // for who fills all of it at once: NOLINT(cppcoreguidelines-pro-type-member-init)
  operator const char *() const { return chars; }
  bool empty() const { return chars[0] == '\0'; }
};

// A text on the heap that is ours to free: the platform's copies, and tables longer than a value.
class OwnedText {
public:
  explicit OwnedText(char *text) : text_(text) {}
  ~OwnedText() { std::free(text_); }
  OwnedText(const OwnedText &) = delete;
  OwnedText &operator=(const OwnedText &) = delete;
  operator const char *() const { return text_ ? text_ : ""; }
  char *writable() const { return text_; } // NULL when there was no memory

private:
  char *text_;
};

inline const char *text_or_empty(const char *text) {
  return text ? text : "";
}
inline bool is_empty(const char *text) {
  return text == nullptr || *text == '\0';
}
inline bool equal(const char *a, const char *b) {
  return std::strcmp(a, b) == 0;
}
inline bool begins_with(const char *text, const char *prefix) {
  return std::strncmp(text, prefix, std::strlen(prefix)) == 0;
}
inline bool is_zero_or_one(const char *text) {
  return equal(text, "0") || equal(text, "1");
}

// The number that a text begins with, 0 without one; beyond the range of an int its nearest end, on every word size.
int leading_number(const char *text);

// A number in decimal.
struct NumberText {
  char chars[24];
  NumberText(bool negative, unsigned long long magnitude);
  template <std::integral Number>
  explicit NumberText(Number number)
      : NumberText(number < 0, number < 0 ? 0 - static_cast<unsigned long long>(number)
                                          : static_cast<unsigned long long>(number)) {}
  operator const char *() const { return chars; }
};

// Copies a value into the caller's buffer, padded with NULs. A value of buflen characters or more leaves the
// buffer without a terminator: agents pass their full buffer size and terminate it themselves. 0, or -1
// without a buffer.
int answer(const char *text, char *buf, unsigned int buflen);
template <std::integral Number>
int answer_number(Number number, char *buf, unsigned int buflen) {
  return answer(NumberText(number), buf, buflen);
}
// The same, but cut so that the buffer is always terminated: for the few getters whose callers rely on it.
int answer_terminated(const char *text, char *buf, unsigned int buflen);

} // namespace kova
