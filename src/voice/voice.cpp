// The telephone line: SIP, codecs, gains, RTP.
#include "platform/keys.hpp"
#include "src/frame/rows.hpp"
#include "src/frame/set.hpp"
#include "src/frame/trace.hpp"
#include "src/lists/fields.hpp"
#include "src/voice/line.hpp"
#include "src/voice/speed_dial.hpp"
#include "src/voice/voice_rows.hpp"

#include <kova/security.h>
#include <kova/voice.h>

#include <cstdio>

namespace kova::voice {

namespace {

// In which server mode a SIP setting can be set.
enum class Mode { either, proxy, pcscf };

// Sets while SIP is not off, and in the mode that it needs. Only a stored "0" switches SIP off: a device whose switch was
// never stored allows.
class while_sip_on {
public:
  explicit while_sip_on(const char *what, Mode mode = Mode::either) : what_(what), mode_(mode) {}
  int operator()(const char *key, const char *value, Rule rule) const {
    return is_open() ? set_by_rule(key, value, rule) : -1;
  }

private:
  bool is_open() const {
    if (equal(load(key::sip_enable), "0")) return refused("[Error]SIP disable don't set %s!\n", what_);
    if (mode_ == Mode::either) return true;
    return equal(load(key::sip_server_mode), mode_ == Mode::proxy ? "0" : "1") ||
           refused("[Error]SIP mode don't set %s!\n", what_);
  }
  const char *what_;
  Mode mode_;
};

// ---- Gains: stored doubled, and crossed: each is heard at the other end of the line

struct Gain {
  const char *told_key, *set_key;
};
constexpr Gain listen_gain = {"Listen_Gain", "Speaker_Gain"}, speaker_gain = {"Speaker_Gain", "Listen_Gain"};

int tell(const Gain &gain, char *buf, unsigned int buflen) {
  return answer_number(load_number(gain.told_key) / 2, buf, buflen);
}

int set_gain(const Gain &gain, const char *value, const Condition &condition) {
  value = text_or_empty(value);
  if (!condition.holds(value)) return -1;
  store(gain.set_key, NumberText(leading_number(value) * 2));
  return 0;
}

// ---- Codecs

constexpr const char *codec_keys[] = {"PRIMARYCompressionType", "SECONDARYCompressionType",
                                      "THIRDCompressionType"};
constexpr const char *codec_names[] = {"Primary", "Secondary", "Third"};

constexpr Rule codec_rules[] = {RULE_CODEC_PRIMARY, RULE_CODEC_SECONDARY, RULE_CODEC_THIRD};
using Codecs = Fields<3, 10>;

bool are_valid(const Codecs &codecs) {
  if (is_empty(codecs[0])) return refused("[VoIP]Input Compression Type value is %s.\n", "NULL");
  for (int i = 0; i < 3; ++i)
    if (!passes(codec_rules[i], codecs[i]))
      return refused("[Error]%s Compression Type value is invalid.\n", codec_names[i]);
  const bool differ =
      !equal(codecs[0], codecs[1]) && !equal(codecs[0], codecs[2]) && !equal(codecs[1], codecs[2]);
  return differ || refused("[VoIP]Compression types cannot be %s\n", "same");
}

// ---- RTP ports

constexpr const char *first_port = "RTPStartPort", *last_port = "RTPEndPort";

// The first port is not above the last.
int set_port_bound(const char *key, const char *value, Rule rule, const char *other_key, bool is_first) {
  value = text_or_empty(value);
  if (!passes(rule, value)) return -1;
  const int bound = leading_number(value), other = load_number(other_key);
  if (is_first ? bound > other : bound < other)
    return refuse("Error, RTP Start Port should not be larger than RTP End Port.");
  store(key, value);
  return 0;
}
int set_first_port(const char *key, const char *value, Rule rule) {
  return set_port_bound(key, value, rule, last_port, true);
}
int set_last_port(const char *key, const char *value, Rule rule) {
  return set_port_bound(key, value, rule, first_port, false);
}

} // namespace

} // namespace kova::voice

using namespace kova;
using namespace kova::voice;

int kovaGetCompressionType(char *buf, unsigned int buflen) {
  const Text primary = load(codec_keys[0]), secondary = load(codec_keys[1]), third = load(codec_keys[2]);
  char list[3 * Text::size];
  std::snprintf(list, sizeof list, "%s,%s,%s", primary.chars, secondary.chars, third.chars);
  return answer(list, buf, buflen);
}

int kovasetCompressionType(const char *value) {
  const Codecs codecs(value);
  if (!are_valid(codecs)) return -1;
  for (int i = 0; i < 3; ++i)
    store(codec_keys[i], codecs[i]);
  return 0;
}

#include "src/voice/voice.def"
