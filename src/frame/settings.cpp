#include "src/frame/settings.hpp"

#include "platform/nvram.h"
#include "src/frame/trace.hpp"

#include <cstring>

namespace kova {

bool load_field(Section section, const char *key, char *field, int size) {
  constexpr int exists = 1;
  std::memset(field, 0, static_cast<std::size_t>(size));
  if (nvram_bufget_string(static_cast<int>(section), key, field, size) == exists) return true;
  std::memset(field, 0, static_cast<std::size_t>(size));
  KOVA_TRACE_ERROR("No value.\n");
  return false;
}

bool load(Section section, const char *key, Text &into) {
  return load_field(section, key, into.chars, Text::size);
}

OwnedText load_whole(Section section, const char *key) {
  return OwnedText(nvram_bufget(static_cast<int>(section), key));
}

int load_switch(const char *key) {
  return tarn_check_nvram_value(static_cast<int>(Section::config), key);
}

void store(Section section, const char *key, const char *value) {
  nvram_bufset(static_cast<int>(section), key, value);
}

int get_setting(Section section, const char *key, char *buf, unsigned int buflen) {
  Text text;
  load(section, key, text);
  return answer(text, buf, buflen);
}

int get_whole_setting(Section section, const char *key, char *buf, unsigned int buflen) {
  return answer(load_whole(section, key), buf, buflen);
}

bool passes(Rule rule, const char *value) {
  return tarn_check_param(rule.group, value, rule.item) >= 0;
}

bool passes_unmarked(Rule rule, const char *value) {
  return passes(rule, value) && checkXSSattack(value) >= 0;
}

const char *boolean_setting(const char *text) {
  text = text_or_empty(text);
  if (strcasestr(text, "TRUE") != nullptr) return "1";
  if (strcasestr(text, "FALSE") != nullptr) return "0";
  if (*text == '1') return "1";
  return *text == '0' ? "0" : nullptr;
}

} // namespace kova
