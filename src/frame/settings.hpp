// Settings in the key/value store, and the rules that judge them.
#pragma once

#include "platform/rules.h"
#include "src/frame/text.hpp"

#include <kova/frame.h>

namespace kova {

enum class Section : int {
  config = 0,  // persistent device configuration
  runtime = 9, // facts that other daemons publish, and the diagnostics parameters
};

// A key that each management instance has for itself. The secondary's is the primary's after "S_", so one text has both.
class OwnKey {
public:
  constexpr explicit OwnKey(const char *secondary) : secondary_(secondary) {}
  const char *current() const;

private:
  const char *secondary_;
};
#define OWN(key) ::kova::OwnKey("S_" key)

// Where a setting is. A text alone is a key of the configuration.
struct Key {
  Section section;
  const char *text;
  constexpr Key(Section section_, const char *text_) : section(section_), text(text_) {}
  constexpr Key(const char *text_) : Key(Section::config, text_) {}
  Key(OwnKey key) : Key(key.current()) {}
};
constexpr Key runtime(const char *key) {
  return {Section::runtime, key};
}
inline Key runtime(OwnKey key) {
  return runtime(key.current());
}

// Reads a setting; a missing key reads as the empty text. True when the key exists.
bool load(Key key, Text &into);
Text load(Key key);
// Reads a setting into a field of its own size; all of it is zero for a missing key. True when the key exists.
bool load_field(Key key, char *field, int size);
template <std::size_t size>
bool load(Key key, char (&field)[size]) {
  return load_field(key, field, static_cast<int>(size));
}
// The whole of a setting that may be longer than the scratch type.
OwnedText load_whole(Key key);
// The number that the setting begins with, 0 without one.
int load_number(Key key);
// A stored switch of the configuration as the platform reads it: 0 when it is off.
int load_switch(const char *key);
// Whether the store took the value is the platform's business: accessors do not look, but for the few that answer it.
int store(Key key, const char *value);
// The setter of what has been judged, or need not be; NULL is stored as the empty text. Always 0.
int set_as_given(Key key, const char *value);

// The plain getter: 0 and "" for a key that does not exist.
int answer_stored(Key key, char *buf, unsigned int buflen);
// A secret is not told: nothing, or one blank.
int answer_nothing(Key key, char *buf, unsigned int buflen);
int answer_blank(Key key, char *buf, unsigned int buflen);

// As answer_stored, from the platform's allocated copy: the value may be longer than the scratch type.
int answer_whole(Key key, char *buf, unsigned int buflen);

using Rule = kova_rule;
// What the platform's checker says of a value: 0 or more for one that passes, else the rule's complaint.
int ask(Rule rule, const char *value);
inline bool passes(Rule rule, const char *value) {
  return ask(rule, value) >= 0;
}
// Passes the rule and holds no markup or shell quoting.
bool passes_unmarked(Rule rule, const char *value);

// The switch that a boolean text stands for, as stored: "1" or "0". "TRUE" anywhere, in any case, is on, else "FALSE"
// is off; else the first character decides. NULL for any other text.
const char *boolean_setting(const char *text);
// The same where every text is one of both: "FALSE" anywhere, in any case, and "0" are off, all else is on.
const char *setting_unless_off(const char *text);

} // namespace kova
