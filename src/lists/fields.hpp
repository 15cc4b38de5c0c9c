// The fields of a separated text.
#pragma once

#include <cstddef>

namespace kova {

// Copies the first fields of a text, each into its room of `size`; one that the text does not have is left as it is.
// Answers how many there are, at most `count`.
int split_fields(const char *text, char separator, char *fields, int count, int size);

// The first `count` fields of a text, each cut to size - 1 characters. One that the text does not have is empty.
template <std::size_t count, std::size_t size>
class Fields {
public:
  explicit Fields(const char *text, char separator = ',')
      : present_(split_fields(text, separator, fields_[0], static_cast<int>(count), static_cast<int>(size))) {
  }
  bool has(int field) const { return field < present_; }
  const char *operator[](int field) const { return fields_[field]; }

private:
  char fields_[count][size] = {};
  int present_;
};

} // namespace kova
