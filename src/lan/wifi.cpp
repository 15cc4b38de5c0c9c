// The WiFi radio and its four networks. Every accepted setting restarts the WiFi service.
#include "platform/keys.hpp"
#include "src/frame/rows.hpp"
#include "src/frame/trace.hpp"
#include "src/lan/stations.hpp"
#include "src/lan/wifi_rows.hpp"
#include "src/transaction/park.hpp"

#include <kova/lan.h>

namespace kova::wifi {

namespace {

int store_and_restart(const char *key, const char *value) {
  store(key, value);
  mrhd_restart_wifi();
  return 0;
}

// The rule alone decides, about an empty value too.
int set(const char *key, const char *value, Rule rule) {
  value = text_or_empty(value);
  return passes(rule, value) ? store_and_restart(key, value) : -1;
}
int set_unless_empty(const char *key, const char *value, Rule rule) {
  return is_empty(value) ? -1 : set(key, value, rule);
}

// The checker has judged, whatever it takes: an empty value is never stored.
int set_judged(const char *key, const char *value, bool) {
  return is_empty(value) ? -1 : store_and_restart(key, value);
}

int check(const char *name, const char *value, bool (*holds)(const char *), Rule rule, Place place) {
  if (is_empty(value) || !holds(value) || !passes(rule, value)) {
    dbg_trace("[TR069]set WiFi Error, value(%s) error\n", text_or_empty(value));
    return -1;
  }
  return park(place, name, value);
}

// The security mode, as the data model names it, goes with one cipher.
struct Security {
  const char *mode_key, *cipher_key;
};
constexpr Security security(const char *mode_key, const char *cipher_key) {
  return {mode_key, cipher_key};
}
int tell(Security security, char *buf, unsigned int buflen) {
  return answer_stored(security.mode_key, buf, buflen);
}
int set_security(Security security, const char *value, const Condition &) {
  static constexpr struct {
    char mode[8], cipher[10];
  } known[] = {{"OPEN", "UNDEFINED"}, {"WPA", "TKIP"}, {"WPA2", "AES"}, {"WPAWPA2", "AESTKIP"}};
  char mode[16] = {};
  std::strncpy(mode, text_or_empty(value), sizeof mode - 1);
  for (const auto &[name, cipher] : known) {
    if (!equal(mode, name)) continue;
    store(security.mode_key, mode);
    return store_and_restart(security.cipher_key, cipher);
  }
  dbg_trace("[TR069]set WiFi Error, authmode(%s) value error\n", mode);
  return -1;
}

} // namespace

} // namespace kova::wifi

using namespace kova;
using namespace kova::wifi;

#include "src/lan/wifi.def"
