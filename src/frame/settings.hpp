// Settings in the key/value store, and the rules that judge them.
#pragma once

#include "src/frame/text.hpp"

namespace kova {

enum class Section : int {
  config = 0,  // persistent device configuration
  runtime = 9, // facts that other daemons publish, and the diagnostics parameters
};

// A key that each management instance has for itself.
struct InstanceKey {
  const char *primary, *secondary;
  const char *current() const;
};
#define KOVA_INSTANCE_KEY(key)                                                                               \
  ::kova::InstanceKey {                                                                                      \
    key, "S_" key                                                                                            \
  }

// Reads a setting; a missing key reads as the empty text. True when the key exists.
bool load(Section section, const char *key, Text &into);
inline Text load(Section section, const char *key) {
  Text text;
  load(section, key, text);
  return text;
}
// Reads a setting into a field of its own size; all of it is zero for a missing key. True when the key exists.
bool load_field(Section section, const char *key, char *field, int size);
template <std::size_t size>
bool load(Section section, const char *key, char (&field)[size]) {
  return load_field(section, key, field, static_cast<int>(size));
}
// The whole of a setting that may be longer than the scratch type.
OwnedText load_whole(Section section, const char *key);
// A stored switch of the configuration as the platform reads it: 0 when it is off.
int load_switch(const char *key);
// Whether the store took the value is the platform's business: accessors do not look.
void store(Section section, const char *key, const char *value);

// The plain getter: 0 and "" for a key that does not exist.
int get_setting(Section section, const char *key, char *buf, unsigned int buflen);

// As get_setting, from the platform's allocated copy: the value may be longer than the scratch type.
int get_whole_setting(Section section, const char *key, char *buf, unsigned int buflen);

// A rule of the platform's checker.
struct Rule {
  int group, item;
};
bool passes(Rule rule, const char *value);
// Passes the rule and holds no markup or shell quoting.
bool passes_unmarked(Rule rule, const char *value);

// The switch that a boolean text stands for, as stored: "1" or "0". "TRUE" anywhere, in any case, is on, else "FALSE"
// is off; else the first character decides. NULL for any other text.
const char *boolean_setting(const char *text);

} // namespace kova

// A table row: an exported getter that answers one setting as stored.
#define KOVA_SETTING_GETTER(getter, section, key)                                                            \
  int getter(char *buf, unsigned int buflen) {                                                               \
    return ::kova::get_setting(section, key, buf, buflen);                                                   \
  }
// A table row: an exported getter whose answer never changes.
#define KOVA_CONSTANT_GETTER(getter, text)                                                                   \
  int getter(char *buf, unsigned int buflen) {                                                               \
    return ::kova::answer(text, buf, buflen);                                                                \
  }
