#include "src/frame/growing_text.hpp"

#include <cstdarg>
#include <cstdio>

namespace kova {

GrowingText::GrowingText(char *room, std::size_t size) : text_(room), size_(room != nullptr ? size : 0) {
  if (size_ > 0) *room = '\0';
}

bool GrowingText::add(const char *format, ...) {
  va_list arguments, again;
  va_start(arguments, format);
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  const bool fits = length >= 0 && static_cast<std::size_t>(length) < size_ - length_;
  if (fits)
    length_ += static_cast<std::size_t>(std::vsnprintf(text_ + length_, size_ - length_, format, again));
  va_end(again);
  va_end(arguments);
  return fits;
}

void GrowingText::add_what_fits(const char *format, ...) {
  if (size_ == 0) return;
  va_list arguments;
  va_start(arguments, format);
  const int wanted = std::vsnprintf(text_ + length_, size_ - length_, format, arguments);
  va_end(arguments);
  if (wanted > 0) length_ += static_cast<std::size_t>(wanted);
  if (length_ >= size_) length_ = size_ - 1;
}

} // namespace kova
