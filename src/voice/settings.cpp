// The settings of the telephone line.
#include "src/frame/rows.hpp"
#include "src/frame/trace.hpp"

#include <kova/security.h>
#include <kova/voice.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace kova::voice {

namespace {

constexpr int sip_rules = 26, line_rules = 27, codec_rules = 28; // the platform's rule groups

// In which server mode a SIP setting can be set.
enum class Needs { nothing, sip, proxy_mode, pcscf_mode };

bool refuse(const char *message, const char *what) {
  dbg_trace(message, what); // NOLINT(clang-diagnostic-format-nonliteral)
  return false;
}

// Only a stored "0" switches SIP off: a device whose switch was never stored allows.
bool is_open(Needs needs, const char *what) {
  if (needs == Needs::nothing) return true;
  if (equal(load("SIPEnable"), "0")) return refuse("[Error]SIP disable don't set %s!\n", what);
  if (needs == Needs::sip) return true;
  const char *mode = needs == Needs::proxy_mode ? "0" : "1";
  return equal(load("SIPServerMode"), mode) || refuse("[Error]SIP mode don't set %s!\n", what);
}

int set(const char *key, const char *value, Rule rule, Needs needs = Needs::nothing, const char *what = "") {
  value = text_or_empty(value);
  if (!is_open(needs, what) || !passes(rule, value)) return -1;
  store(key, value);
  return 0;
}

// ---- Gains: stored doubled

int get_gain(const char *key, char *buf, unsigned int buflen) {
  char gain[16];
  std::snprintf(gain, sizeof gain, "%d", load_number(key) / 2);
  return answer(gain, buf, buflen);
}

int set_gain(const char *key, const char *value) {
  const int gain = leading_number(text_or_empty(value)); // a text without a number is 0
  if (gain > 0 || gain < -100 || gain % 20 != 0) return -1;
  char stored[16];
  std::snprintf(stored, sizeof stored, "%d", gain * 2);
  store(key, stored);
  return 0;
}

// ---- Codecs

constexpr const char *codec_keys[] = {"PRIMARYCompressionType", "SECONDARYCompressionType",
                                      "THIRDCompressionType"};
constexpr const char *codec_names[] = {"Primary", "Secondary", "Third"};

struct Codecs {
  char name[3][10] = {};
  explicit Codecs(const char *list) {
    for (int i = 0; i < 3; ++i)
      getNthField(i, list, ',', name[i], sizeof name[i]);
  }
  bool valid() const {
    if (*name[0] == '\0') return refuse("[VoIP]Input Compression Type value is %s.\n", "NULL");
    for (int i = 0; i < 3; ++i)
      if (!passes(kova::rule_of(codec_rules, i), name[i]))
        return refuse("[Error]%s Compression Type value is invalid.\n", codec_names[i]);
    const bool differ = !equal(name[0], name[1]) && !equal(name[0], name[2]) && !equal(name[1], name[2]);
    return differ || refuse("[VoIP]Compression types cannot be %s\n", "same");
  }
};

// ---- RTP ports

int set_port_bound(const char *key, const char *value, int item, const char *other_key, bool is_start) {
  value = text_or_empty(value);
  if (!passes(kova::rule_of(line_rules, item), value)) return -1;
  const int bound = leading_number(value), other = load_number(other_key);
  if (is_start ? bound > other : bound < other) {
    dbg_trace("Error, RTP Start Port should not be larger than RTP End Port.");
    return -1;
  }
  store(key, value);
  return 0;
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
  const Codecs codecs(text_or_empty(value));
  if (!codecs.valid()) return -1;
  for (int i = 0; i < 3; ++i)
    store(codec_keys[i], codecs.name[i]);
  return 0;
}

// The gains are crossed: each is heard at the other end of the line.
int kovaGetListenGain(char *buf, unsigned int buflen) {
  return get_gain("Listen_Gain", buf, buflen);
}
int kovasetListenGain(const char *value) {
  return set_gain("Speaker_Gain", value);
}
int kovaGetSpeakerGain(char *buf, unsigned int buflen) {
  return get_gain("Speaker_Gain", buf, buflen);
}
int kovasetSpeakerGain(const char *value) {
  return set_gain("Listen_Gain", value);
}

int kovasetRTPLocalPortMin(const char *value) {
  return set_port_bound("RTPStartPort", value, 2, "RTPEndPort", true);
}
int kovasetRTPLocalPortMax(const char *value) {
  return set_port_bound("RTPEndPort", value, 3, "RTPStartPort", false);
}

#define GETTER(getter, key) STORED(getter, key)
#define SIP(getter, setter, key, item, needs, what)                                                          \
  GETTER(getter, key)                                                                                        \
  int setter(const char *value) {                                                                            \
    return set(key, value, kova::rule_of(sip_rules, item), Needs::needs, what);                              \
  }
#define LINE(getter, setter, key, item)                                                                      \
  GETTER(getter, key)                                                                                        \
  int setter(const char *value) {                                                                            \
    return set(key, value, kova::rule_of(line_rules, item));                                                 \
  }

// clang-format off
GETTER(kovaGetRTPLocalPortMin, "RTPStartPort")
GETTER(kovaGetRTPLocalPortMax, "RTPEndPort")
CONSTANT(kovaGetAuthPassword, " ")
int kovaSetAuthPassword(const char *value) { return set("SIPPassword", value, kova::rule_of(sip_rules, 3), Needs::sip, "Auth Password"); }
//   getter                         setter                         key                  item  needs       in messages
SIP( kovaGetVoipBasicEnable,        kovaSetVoipBasicEnable,        "SIPEnable",          0,   nothing,     "SIP")
SIP( kovaGetDirectoryNumber,        kovaSetDirectoryNumber,        "SIPId",              1,   sip,         "Directory Number")
SIP( kovaGetAuthUserName,           kovaSetAuthUserName,           "SIPUserName",        2,   sip,         "Auth User Name")
SIP( kovaGetSIPServerMode,          kovaSetSIPServerMode,          "SIPServerMode",      4,   sip,         "SIP Server Mode")
SIP( kovaGetPCSCFServerDomain,      kovaSetPCSCFServerDomain,      "pcscfServerDomain",  5,   pcscf_mode,  "P-CSCF Server Domain")
SIP( kovaGetPCSCFServerPort,        kovaSetPCSCFServerPort,        "pcscfServerPort",    6,   pcscf_mode,  "P-CSCF Server Port")
SIP( kovaGetSIPRegistrarServer,     kovaSetSIPRegistrarServer,     "SIPRegisterServer",  7,   proxy_mode,  "Registrar Server")
SIP( kovaGetSIPRegistrarServerPort, kovaSetSIPRegistrarServerPort, "SIPRegisterPort",    8,   proxy_mode,  "Registrar Server Port")
SIP( kovaGetSIPProxyServer,         kovaSetSIPProxyServer,         "SIPProxyServer",     9,   proxy_mode,  "Proxy Server")
SIP( kovaGetSIPProxyServerPort,     kovaSetSIPProxyServerPort,     "SIPProxyPort",      10,   proxy_mode,  "Proxy Server Port")
SIP( kovaGetSIPUserAgentDomain,     kovaSetSIPUserAgentDomain,     "SIPServerDomain",   11,   proxy_mode,  "User Agent Domain")
LINE(kovaGetDTMFMethod,             kovasetDTMFMethod,             "DTMFMethod",         0)
LINE(kovaGetFaxOption,              kovasetFaxOption,              "FAXOption",          1)
LINE(kovaGetSilenceSuppression,     kovasetSilenceSuppression,     "SIPVad",             4)
LINE(kovaGetRegions,                kovasetRegions,                "COUNTRYCode",        5)
LINE(kovaGetCallerID,               kovasetCallerID,               "CALLERType",         6)
LINE(kovaGetDialingInterval,        kovasetDialingInterval,        "DIALInterval",       7)
LINE(kovaGetOffhookInterval,        kovasetOffhookInterval,        "OFFInterval",        8)
