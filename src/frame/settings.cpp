#include "frame/settings.hpp"

#include "frame/trace.hpp"
#include "platform/nvram.h"

#include <cstring>

namespace kova {

bool load(Section section, const char *key, Text &into) {
  constexpr int exists = 1;
  if (nvram_bufget_string(static_cast<int>(section), key, into.chars, Text::size) == exists) return true;
  into = {};
  KOVA_TRACE_ERROR("No value.\n");
  return false;
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
  return answer(OwnedText(nvram_bufget(static_cast<int>(section), key)), buf, buflen);
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
