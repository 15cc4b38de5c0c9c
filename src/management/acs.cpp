// The management server's settings.
#include "src/frame/rows.hpp"
#include "src/frame/statistics.hpp"
#include "src/management/reach.hpp"

#include <kova/management.h>

#include <cstdio>

namespace kova::management {

namespace {

Rule rule(int item) {
  constexpr int management_server = 7; // the platform's rule group
  return kova::rule_of(management_server, item);
}

int get(Key key, char *buf, unsigned int buflen) {
  return answer_stored(key, buf, buflen);
}

int set(Key key, const char *value) {
  store(key, text_or_empty(value));
  return 0;
}

int set_checked(Key key, const char *value, int item) {
  return passes_unmarked(rule(item), text_or_empty(value)) ? set(key, value) : -1;
}

int set_switch(Key key, const char *value, int item) {
  const char *digit = boolean_setting(value);
  return digit == nullptr ? -1 : set_checked(key, digit, item);
}

// Judges the switch that the text stands for, but stores the text itself.
int set_switch_as_given(Key key, const char *value, int item) {
  const char *digit = boolean_setting(value);
  return digit != nullptr && passes_unmarked(rule(item), digit) ? set(key, value) : -1;
}

constexpr Key shared(const char *key) {
  return key;
}

} // namespace

} // namespace kova::management

using namespace kova;
using namespace kova::management;

#define GETTER(getter, key)                                                                                  \
  int getter(char *buf, unsigned int buflen) {                                                               \
    return get(key, buf, buflen);                                                                            \
  }
#define SETTER(setter, key)                                                                                  \
  int setter(const char *value) {                                                                            \
    return set(key, value);                                                                                  \
  }
#define CHECKED_SETTER(setter, how, key, item)                                                               \
  int setter(const char *value) {                                                                            \
    return how(key, value, item);                                                                            \
  }
#define FREE(name, key) GETTER(kovaGetTR069##name, key) SETTER(kovaSetTR069##name, key)

#define COUNTER(getter, counter)                                                                             \
  int getter(char *buf, unsigned int buflen) {                                                               \
    return get_counter("wlan0", counter, buf, buflen);                                                       \
  }

int kovaSetTR069PeriodicInformInterval(const char *value) {
  // The primary's switch counts for both instances.
  if (equal(load("TR_INFORM_ENABLE"), "0")) return -1;
  return set_checked(OWN("TR_INFORM_INTERVAL"), value, 6);
}

// The agent publishes the address while it runs.
int kovaGetTR069UDPConnectionRequestAddress(char *buf, unsigned int buflen) {
  return answer_stored(runtime(OWN("TR_UDPCR_PATH")), buf, buflen);
}
int kovaSetTR069UDPConnectionRequestAddress(const char *value) {
  if (checkXSSattack(value) < 0) return -1;
  store(runtime(OWN("TR_UDPCR_PATH")), text_or_empty(value));
  return 0;
}

int kovaGetTR069ConnectionRequestURL(char *buf, unsigned int buflen) {
  constexpr int primary_port = 7547, secondary_port = 7550;
  char interface[interface_name_size] = {};
  management_interface(interface);
  char address[16] = {};
  Text url;
  if (get_interface_ip(interface, address, sizeof address) == 0) {
    std::snprintf(url.chars, Text::size - 1, "http://%s:%d", address,
                  gSecondaryInstance != 0 ? secondary_port : primary_port);
    set(OWN("TR_CR_PATH"), url);
  }
  return answer(url, buf, buflen);
}

// clang-format off
//     getter                                         setter                                                               key                          rule item
GETTER(kovaGetTR069ManagementServerURL,               OWN("TR_ACS_URL"))      CHECKED_SETTER(kovaSetTR069ManagementServerURL,          set_checked,         OWN("TR_ACS_URL"),        2)
GETTER(kovaGetTR069ManagementServerUsername,          OWN("TR_ACS_USER"))     CHECKED_SETTER(kovaSetTR069ManagementServerUsername,     set_checked,         OWN("TR_ACS_USER"),       3)
GETTER(kovaGetTR069ManagementServerPassword,          OWN("TR_ACS_PASS"))     CHECKED_SETTER(kovaSetTR069ManagementServerPassword,     set_checked,         OWN("TR_ACS_PASS"),       4)
GETTER(kovaGetTR069PeriodicInformEnable,              OWN("TR_INFORM_ENABLE")) CHECKED_SETTER(kovaSetTR069PeriodicInformEnable,        set_switch,          OWN("TR_INFORM_ENABLE"),  5)
GETTER(kovaGetTR069PeriodicInformInterval,            OWN("TR_INFORM_INTERVAL"))
GETTER(kovaGetTR069PeriodicInformTime,                OWN("TR_INFORM_TIME"))  SETTER(kovaSetTR069PeriodicInformTime,                   OWN("TR_INFORM_TIME"))
GETTER(kovaGetTR069ParameterKey,                      OWN("TR_PARAMKEY"))     SETTER(kovaSetTR069ParameterKey,                         OWN("TR_PARAMKEY"))
                                                                              SETTER(kovaSetTR069ConnectionRequestURL,                 OWN("TR_CR_PATH"))
GETTER(kovaGetTR069ConnectionRequestUsername,         OWN("TR_CR_USER"))      CHECKED_SETTER(kovaSetTR069ConnectionRequestUsername,    set_checked,         OWN("TR_CR_USER"),        7)
GETTER(kovaGetTR069ConnectionRequestPassword,         OWN("TR_CR_PASS"))      CHECKED_SETTER(kovaSetTR069ConnectionRequestPassword,    set_checked,         OWN("TR_CR_PASS"),        8)
CONSTANT(kovaGetTR069UDPConnectionRequestAddressNotificationLimit, "")
                                                                              CHECKED_SETTER(kovaSetTR069UDPConnectionRequestAddressNotificationLimit, set_checked, OWN("TR_UDPCR_LIMIT"), 13)
GETTER(kovaGetTR069STUNEnable,                        OWN("TR_STUN_ENABLE"))  CHECKED_SETTER(kovaSetTR069STUNEnable,                   set_switch_as_given, OWN("TR_STUN_ENABLE"),   14)
GETTER(kovaGetTR069STUNServerAddress,                 OWN("TR_STUN_SERVER"))  CHECKED_SETTER(kovaSetTR069STUNServerAddress,            set_checked,         OWN("TR_STUN_SERVER"),   15)
GETTER(kovaGetTR069STUNServerPort,                    OWN("TR_STUN_PORT"))    CHECKED_SETTER(kovaSetTR069STUNServerPort,               set_checked,         OWN("TR_STUN_PORT"),     16)
CONSTANT(kovaGetTR069STUNUsername, "")                            CHECKED_SETTER(kovaSetTR069STUNUsername,                 set_checked,         OWN("TR_STUN_USER"),     17)
CONSTANT(kovaGetTR069STUNPassword, "")                            CHECKED_SETTER(kovaSetTR069STUNPassword,                 set_checked,         OWN("TR_STUN_PASS"),     18)
GETTER(kovaGetTR069STUNMaximumKeepAlivePeriod,        OWN("TR_STUN_MAX_KA"))  CHECKED_SETTER(kovaSetTR069STUNMaximumKeepAlivePeriod,   set_checked,         OWN("TR_STUN_MAX_KA"),   19)
GETTER(kovaGetTR069STUNMinimumKeepAlivePeriod,        OWN("TR_STUN_MIN_KA"))  CHECKED_SETTER(kovaSetTR069STUNMinimumKeepAlivePeriod,   set_checked,         OWN("TR_STUN_MIN_KA"),   20)
GETTER(kovaGetTR069NatDetected,                       OWN("TR_NAT_DETECTED")) CHECKED_SETTER(kovaSetTR069NatDetected,                  set_switch_as_given, OWN("TR_NAT_DETECTED"),  21)
GETTER(kovaGetTR069X_STUNRealm,                       shared("TR_X_STUN_REALM"))       CHECKED_SETTER(kovaSetTR069X_STUNRealm,         set_checked,         shared("TR_X_STUN_REALM"), 22)
GETTER(kovaGetTR069X_FingerPrintEnable,               shared("TR_X_FINGERPRINTENABLE")) CHECKED_SETTER(kovaSetTR069X_FingerPrintEnable, set_switch,        shared("TR_X_FINGERPRINTENABLE"), 23)
GETTER(kovaGetTR069X_Loglevel,                        shared("/cwmp/loglevel")) SETTER(kovaSetTR069X_Loglevel,                         shared("/cwmp/loglevel"))
GETTER(kovaGetTR069SSLCert,                           OWN("TR_CERT_PATH"))
GETTER(kovaGetTR069SSLCaCert,                         OWN("TR_CACERT_PATH"))
GETTER(kovaGetTR069SSLEnable,                         OWN("TR_CERT_ENABLE"))
COUNTER(kovaGetWLANConfigurationTotalBytesSent,       sent_bytes)
COUNTER(kovaGetWLANConfigurationTotalBytesReceived,   received_bytes)
COUNTER(kovaGetWLANConfigurationTotalPacketsSent,     sent_packets)
COUNTER(kovaGetWLANConfigurationTotalPacketsReceived, received_packets)
