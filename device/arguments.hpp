// Texts as the list of pointers, ended by a null pointer, that starting a program takes.
#pragma once

#include <string>
#include <vector>

namespace kova::device {

// Valid as long as the texts are.
inline std::vector<char *> pointers_to(std::vector<std::string> &texts) {
  std::vector<char *> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string &text : texts)
    pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

} // namespace kova::device
