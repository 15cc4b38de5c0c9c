// The packet filters' switches, modes and logs, and what makes the firewall read them.
#include "src/frame/rows.hpp"
#include "src/frame/trace.hpp"
#include "src/security/manager.hpp"

#include <kova/security.h>

#include <initializer_list>

namespace kova::security {

namespace {

// A filter family: the platform's rule group and its keys.
struct Family {
  const char *name;
  int rules;
  const char *enable_key, *mode_key, *log_key;
};
constexpr Family mac = {"MAC", 13, "MACFilterEnable", "MACFilterMode", "MACFilterDropLogEnable"},
                 url = {"Url", 15, "URLFilterEnable", "URLFilterMode", "URLFilterDropLogEnable"},
                 ip = {"IP", 17, "IPPortFilterEnable", "DefaultIPPortFilterPolicy",
                       "IPPortFilterDropLogEnable"},
                 ipv6 = {"IPv6", 18, "IPPort6FilterEnable", "DefaultIPPort6FilterPolicy",
                         "IPPort6FilterDropLogEnable"};
enum Item { enable_item = 1, mode_item = 2, log_item = 3 };

// Wired and wireless firewall each have a copy of the MAC settings.
void store_mac(const char *key, const char *wireless_key, const char *value) {
  store(key, value);
  store(wireless_key, value);
}

bool may_enable(const Family &family, const char *value) {
  return passes(kova::rule_of(family.rules, enable_item), value);
}

// Mode and log can be changed only while the family is on.
bool may_change(const Family &family, const char *value, Item item) {
  if (load_switch(family.enable_key) != 0) return passes(kova::rule_of(family.rules, item), value);
  dbg_trace("[TR069][Error]%s disable, don't set %s %s.\n", family.name, family.name,
            item == mode_item ? "mode" : "log");
  return false;
}

int set_enable(const Family &family, const char *value) {
  value = text_or_empty(value);
  if (!may_enable(family, value)) return -1;
  store(family.enable_key, value);
  return 0;
}

int set_mode(const Family &family, const char *value) {
  value = text_or_empty(value);
  if (!may_change(family, value, mode_item)) return -1;
  store(family.mode_key, value);
  return 0;
}

int set_log(const Family &family, const char *value) {
  value = text_or_empty(value);
  if (!may_change(family, value, log_item)) return -1;
  store(family.log_key, value);
  return 0;
}

int apply(const char *value, std::initializer_list<const char *> events) {
  if (!equal(text_or_empty(value), "1")) return -1;
  for (const char *event : events)
    kova_trigger_cpe_event(event);
  return 0;
}

constexpr const char *access_event = "fw_sec_ddos_filter";

} // namespace

} // namespace kova::security

using namespace kova;
using namespace kova::security;

int kovasetMacFilteringBasicSettingEnableValue(const char *value) {
  value = text_or_empty(value);
  if (!may_enable(mac, value)) return -1;
  store_mac(mac.enable_key, "WlanMACFilterEnable", value);
  return 0;
}

int kovasetMacFilteringBasicSettingModeValue(const char *value) {
  value = text_or_empty(value);
  if (!may_change(mac, value, mode_item)) return -1;
  if (equal(value, "1") && load("MACFilterWhiteRules").empty())
    store_mac("MACFilterWhiteRules", "WlanMACFilterWhiteRules", managing_client(Section::config).chars);
  store_mac(mac.mode_key, "WlanMACFilterMode", value);
  return 0;
}

int kovasetMacApply(const char *value) {
  return apply(value, {"fw_sec_mac_filter", "ce_set_wlan_mac_filter"});
}
int kovasetUrlApply(const char *value) {
  return apply(value, {"fw_sec_url_filter"});
}
int kovasetIpApply(const char *value) {
  return apply(value, {"fw_sec_ipv4_filter"});
}
int kovasetIpv6Apply(const char *value) {
  return apply(value, {"fw_sec_ipv6_filter"});
}
int kovasetACLApply(const char *value) {
  return apply(value, {access_event});
}
int kovaGetIpApply(char *, unsigned int) {
  return 0;
}
int kovaGetIpv6Apply(char *, unsigned int) {
  return 0;
}

int kovasetWebLoginEnable(const char *value) {
  if (!is_zero_or_one(text_or_empty(value))) return -1;
  store("TR_WEB_LOGIN_ENABLE", value);
  kova_trigger_cpe_event(access_event); // takes effect without an apply
  return 0;
}

#define GETTER(getter, key) STORED(getter, key)
#define SETTER(setter, how, family)                                                                          \
  int setter(const char *value) {                                                                            \
    return how(family, value);                                                                               \
  }

// clang-format off
GETTER(kovaGetWebLoginEnable, "TR_WEB_LOGIN_ENABLE")
GETTER(kovaGetMacFilteringBasicSettingEnableValue,     mac.enable_key)
GETTER(kovaGetMacFilteringBasicSettingModeValue,       mac.mode_key)
GETTER(kovaGetMacFilteringBasicSettingLogEnableValue,  mac.log_key)     SETTER(kovasetMacFilteringBasicSettingLogEnableValue,  set_log,    mac)
GETTER(kovaGetUrlFilteringBasicSettingEnableValue,     url.enable_key)  SETTER(kovasetUrlFilteringBasicSettingEnableValue,     set_enable, url)
GETTER(kovaGetUrlFilteringBasicSettingModeValue,       url.mode_key)    SETTER(kovasetUrlFilteringBasicSettingModeValue,       set_mode,   url)
GETTER(kovaGetUrlFilteringBasicSettingLogEnableValue,  url.log_key)     SETTER(kovasetUrlFilteringBasicSettingLogEnableValue,  set_log,    url)
GETTER(kovaGetIpFilteringBasicSettingEnableValue,      ip.enable_key)   SETTER(kovasetIpFilteringBasicSettingEnableValue,      set_enable, ip)
GETTER(kovaGetIpFilteringBasicSettingModeValue,        ip.mode_key)     SETTER(kovasetIpFilteringBasicSettingModeValue,        set_mode,   ip)
GETTER(kovaGetIpFilteringBasicSettingLogEnableValue,   ip.log_key)      SETTER(kovasetIpFilteringBasicSettingLogEnableValue,   set_log,    ip)
GETTER(kovaGetIpv6FilteringBasicSettingEnableValue,    ipv6.enable_key) SETTER(kovasetIpv6FilteringBasicSettingEnableValue,    set_enable, ipv6)
GETTER(kovaGetIpv6FilteringBasicSettingModeValue,      ipv6.mode_key)   SETTER(kovasetIpv6FilteringBasicSettingModeValue,      set_mode,   ipv6)
GETTER(kovaGetIpv6FilteringBasicSettingLogEnableValue, ipv6.log_key)    SETTER(kovasetIpv6FilteringBasicSettingLogEnableValue, set_log,    ipv6)
