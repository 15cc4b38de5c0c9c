#include "request/shortened.hpp"

namespace kova::request {
namespace {

bool continues_character(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

} // namespace

std::string shortened(const std::string &text) {
  constexpr size_t longest = 80, beginning = 60;
  if (text.size() <= longest) return text;
  size_t cut = beginning;
  while (cut > 0 && continues_character(text[cut]))
    --cut;
  return text.substr(0, cut) + "... (" + std::to_string(text.size()) + " bytes)";
}

std::string quoted(const std::string &text) {
  return "\"" + shortened(text) + "\"";
}

} // namespace kova::request
