// The WiFi radio and its four networks. Every accepted setting restarts the WiFi service.
#include "src/frame/settings.hpp"
#include "src/frame/trace.hpp"
#include "src/transaction/park.hpp"

#include <kova/lan.h>

#include <cstdlib>
#include <cstring>

namespace kova::wifi {

namespace {

constexpr int rules = 1; // the platform's rule group for WiFi
constexpr Rule enable_rule = {rules, 1}, mode_rule = {rules, 2}, channel_rule = {rules, 3},
               ssid_rule = {rules, 4}, pass_phrase_rule = {rules, 7}, rate_rule = {rules, 17},
               bandwidth_rule = {rules, 19}, hidden_rule = {rules, 24}, isolation_rule = {rules, 25};

int store_and_restart(const char *key, const char *value) {
  store(Section::config, key, value);
  mrhd_restart_wifi();
  return 0;
}

// The rule alone decides, about an empty value too.
int set(const char *key, const char *value, Rule rule) {
  value = text_or_empty(value);
  return passes(rule, value) ? store_and_restart(key, value) : -1;
}

// The checker has judged.
int set_grouped(const char *key, const char *value) {
  return is_empty(value) ? -1 : store_and_restart(key, value);
}

bool any(const char *) {
  return true;
}
bool rate_index(const char *value) {
  constexpr long highest = 12;
  return value[std::strspn(value, "0123456789")] == '\0' && std::strtol(value, nullptr, 10) <= highest;
}

int check(const char *name, const char *value, bool (*allowed)(const char *), Rule rule, PendingValue &slot) {
  if (is_empty(value) || !allowed(value) || !passes(rule, value)) {
    dbg_trace("[TR069]set WiFi Error, value(%s) error\n", text_or_empty(value));
    return -1;
  }
  return park({gPVCL.wifiTouched, slot}, name, value);
}

// The mode as the data model names it goes with one cipher.
int set_encryption(const char *mode_key, const char *cipher_key, const char *value) {
  static constexpr struct {
    char mode[8], cipher[10];
  } known[] = {{"OPEN", "UNDEFINED"}, {"WPA", "TKIP"}, {"WPA2", "AES"}, {"WPAWPA2", "AESTKIP"}};
  char mode[16] = {};
  std::strncpy(mode, text_or_empty(value), sizeof mode - 1);
  for (const auto &[name, cipher] : known) {
    if (!equal(mode, name)) continue;
    store(Section::config, mode_key, mode);
    return store_and_restart(cipher_key, cipher);
  }
  dbg_trace("[TR069]set WiFi Error, authmode(%s) value error\n", mode);
  return -1;
}

} // namespace

} // namespace kova::wifi

using namespace kova;
using namespace kova::wifi;

#define SETTING(getter, setter, key, rule)                                                                   \
  KOVA_SETTING_GETTER(getter, Section::config, key)                                                          \
  int setter(const char *value) {                                                                            \
    return set(key, value, rule);                                                                            \
  }
#define GROUPED(getter, setter, checker, key, slot, allowed, rule)                                           \
  KOVA_SETTING_GETTER(getter, Section::config, key)                                                          \
  int setter(const char *value) {                                                                            \
    return set_grouped(key, value);                                                                          \
  }                                                                                                          \
  int checker(const char *name, const char *value) {                                                         \
    return check(name, value, allowed, rule, gPVCL.slot);                                                    \
  }

// clang-format off
SETTING(getTR069WifiEnable,    setTR069WifiEnable,    "Wifi_enable", enable_rule)
GROUPED(getTR069WifiMode,      setTR069WifiMode,      chkTR069WifiMode,      "0_rfmode",  wifiMode,      any,            mode_rule)
GROUPED(getTR069WifiRate,      setTR069WifiRate,      chkTR069WifiRate,      "Fixrate",   wifiRate,      rate_index,     rate_rule)
GROUPED(getTR069WifiBandwidth, setTR069WifiBandwidth, chkTR069WifiBandwidth, "Bandwidth", wifiBandwidth, is_zero_or_one, bandwidth_rule)

// The networks differ by their number; the station lists are in stations.cpp.
#define NETWORK(n)                                                                                            \
  SETTING(getTR069WifiAPIsolate##n,    setTR069WifiAPIsolate##n,    #n "_apisolate", isolation_rule)          \
  SETTING(getTR069WifiPassPhrase##n,   setTR069WifiPassPhrase##n,   #n "_wpapass",   pass_phrase_rule)        \
  KOVA_SETTING_GETTER(getTR069WifiEncryption##n, Section::config,   #n "_authmode")                           \
  int setTR069WifiEncryption##n(const char *value) { return set_encryption(#n "_authmode", #n "_authalgo", value); }
#define FURTHER_NETWORK(n)                                                                                    \
  NETWORK(n)                                                                                                  \
  SETTING(getTR069WifiMutiSSID##n,     setTR069WifiMutiSSID##n,     #n "_ssid",      ssid_rule)               \
  SETTING(getTR069WifiMutiStatus##n,   setTR069WifiMutiStatus##n,   #n "_ENABLE",    enable_rule)             \
  SETTING(getTR069WifiMutiHideSSID##n, setTR069WifiMutiHideSSID##n, #n "_hidden",    hidden_rule)
NETWORK(0)
SETTING(  getTR069WifiSSID0,           setTR069WifiSSID0,           "0_ssid",        ssid_rule)
SETTING(  getTR069WifiHideSSID0,       setTR069WifiHideSSID0,       "0_hidden",      hidden_rule)
FURTHER_NETWORK(1)
FURTHER_NETWORK(2)
FURTHER_NETWORK(3)
// clang-format on

KOVA_SETTING_GETTER(getTR069WifiChannel, Section::config, "Channel")
int setTR069WifiChannel(const char *value) {
  return is_empty(value) ? -1 : set("Channel", value, channel_rule);
}
