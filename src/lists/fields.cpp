#include "src/lists/fields.hpp"

#include "src/frame/text.hpp"

#include <kova/security.h>

namespace kova {

int split_fields(const char *text, char separator, char *fields, int count, int size) {
  int present = 0;
  while (present < count && getNthField(present, text, separator, fields, size) == 0) {
    ++present;
    fields += size;
  }
  return present;
}

} // namespace kova

int getNthField(int index, const char *text, char separator, char *out, int outlen) {
  if (index < 0 || out == nullptr || outlen < 1) return -1;
  const char *field = kova::text_or_empty(text);
  for (; index > 0; --index) {
    field = std::strchr(field, separator);
    if (field == nullptr || *field == '\0') return -1; // a NUL separates nothing
    ++field;
  }
  const char separators[] = {separator, '\0'};
  const std::size_t length = std::strcspn(field, separators), room = static_cast<std::size_t>(outlen) - 1;
  const std::size_t copied = length < room ? length : room;
  std::memcpy(out, field, copied);
  out[copied] = '\0';
  return 0;
}
