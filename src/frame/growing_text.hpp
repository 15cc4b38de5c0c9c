// A text that grows piece by piece, in room that its owner lends.
#pragma once

#include <cstddef>

namespace kova {

class GrowingText {
public:
  // Without room, for want of memory, every piece is left out.
  GrowingText(char *room, std::size_t size);
  template <std::size_t size>
  explicit GrowingText(char (&room)[size]) : GrowingText(room, size) {}

  // Adds a piece whole. One that does not fit is left out, and nothing is written.
  __attribute__((format(printf, 2, 3))) bool add(const char *format, ...);
  // Adds as much of a piece as fits.
  __attribute__((format(printf, 2, 3))) void add_what_fits(const char *format, ...);

  bool empty() const { return length_ == 0; }
  std::size_t length() const { return length_; }
  operator const char *() const { return text_ != nullptr ? text_ : ""; }

private:
  char *text_;
  std::size_t size_, length_ = 0;
};

} // namespace kova
