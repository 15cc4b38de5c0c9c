#include "src/frame/settings.hpp"

#include "platform/nvram.h"
#include "src/frame/trace.hpp"

#include <cstring>

namespace kova {

const char *OwnKey::current() const {
  constexpr std::size_t mark = sizeof "S_" - 1;
  return gSecondaryInstance != 0 ? secondary_ : secondary_ + mark;
}

bool load_field(Key key, char *field, int size) {
  constexpr int exists = 1;
  std::memset(field, 0, static_cast<std::size_t>(size));
  if (nvram_bufget_string(static_cast<int>(key.section), key.text, field, size) == exists) return true;
  std::memset(field, 0, static_cast<std::size_t>(size));
  trace_error("No value.\n");
  return false;
}

bool load(Key key, Text &into) {
  return load_field(key, into.chars, Text::size);
}

Text load(Key key) {
  Text text{Text::unset};
  load(key, text);
  return text;
}

OwnedText load_whole(Key key) {
  return OwnedText(nvram_bufget(static_cast<int>(key.section), key.text));
}

int load_number(Key key) {
  return leading_number(load(key));
}

int load_switch(const char *key) {
  return tarn_check_nvram_value(static_cast<int>(Section::config), key);
}

int store(Key key, const char *value) {
  return nvram_bufset(static_cast<int>(key.section), key.text, value);
}

int set_as_given(Key key, const char *value) {
  store(key, text_or_empty(value));
  return 0;
}

int answer_stored(Key key, char *buf, unsigned int buflen) {
  return answer(load(key), buf, buflen);
}

int answer_nothing(Key, char *buf, unsigned int buflen) {
  return answer("", buf, buflen);
}

int answer_blank(Key, char *buf, unsigned int buflen) {
  return answer(" ", buf, buflen);
}

int answer_whole(Key key, char *buf, unsigned int buflen) {
  return answer(load_whole(key), buf, buflen);
}

int ask(Rule rule, const char *value) {
  return tarn_check_param(kova_rule_group(rule), value, kova_rule_item(rule));
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

const char *setting_unless_off(const char *text) {
  return strcasestr(text, "FALSE") != nullptr || equal(text, "0") ? "0" : "1";
}

} // namespace kova
