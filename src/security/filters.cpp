// The packet filters' switches, modes and logs, what makes the firewall read them, and their lists.
#include "platform/keys.hpp"
#include "src/frame/rows.hpp"
#include "src/frame/set.hpp"
#include "src/frame/trace.hpp"
#include "src/lists/row_list.hpp"
#include "src/security/filters_rows.hpp"
#include "src/security/mac_url_rows.hpp"
#include "src/security/manager.hpp"

#include <kova/security.h>

namespace kova::security {

namespace {

// ---- Switches

// Mode and log can be changed only while the family is on.
class while_on {
public:
  while_on(const char *enable_key, const char *family, const char *what)
      : enable_key_(enable_key), family_(family), what_(what) {}
  bool takes(const char *value, Rule rule) const {
    if (load_switch(enable_key_) != 0) return passes(rule, value);
    dbg_trace("[TR069][Error]%s disable, don't set %s %s.\n", family_, family_, what_);
    return false;
  }
  int operator()(const char *key, const char *value, Rule rule) const {
    value = text_or_empty(value);
    if (!takes(value, rule)) return -1;
    store(key, value);
    return 0;
  }

private:
  const char *enable_key_, *family_, *what_;
};

// Wired and wireless firewall each have a copy of the MAC settings.
int store_mac(const char *key, const char *wireless_key, const char *value) {
  store(key, value);
  store(wireless_key, value);
  return 0;
}

int set_mac_enable(const char *key, const char *value, Rule rule) {
  value = text_or_empty(value);
  return passes(rule, value) ? store_mac(key, "WlanMACFilterEnable", value) : -1;
}

int set_mac_mode(const char *key, const char *value, Rule rule) {
  value = text_or_empty(value);
  if (!while_on(key::mac_enable, "MAC", "mode").takes(value, rule)) return -1;
  if (equal(value, "1") && load(key::mac_white).empty())
    store_mac(key::mac_white, key::wlan_mac_white, managing_client(Section::config).chars);
  return store_mac(key, "WlanMACFilterMode", value);
}

// ---- Applying

int trigger(const char *event) {
  kova_trigger_cpe_event(event);
  return 0;
}

int apply_mac_filter() {
  trigger("fw_sec_mac_filter");
  return trigger("ce_set_wlan_mac_filter");
}

// ---- Lists

using namespace lists;

int check_ip_row(const char *value, int) {
  return checkIPFilterAllParam(value);
}
int check_ipv6_row(const char *value, int) {
  return checkIPV6FilterAllParam(value);
}

// What the two lists of a family have in common.
struct Family {
  const char *name, *enable_key, *mode_key, *placeholder;
  std::size_t kept_by_set;
  int (*check)(const char *value, int position);
};
// clang-format off
constexpr const char *blank = " ", *blank_packet = " ,,,,,,,,1,1";
constexpr Family
    mac  = {"MAC",  key::mac_enable,  key::mac_mode,  blank,        keeps_255, check_mac_row},
    url  = {"URL",  key::url_enable,  key::url_mode,  blank,        keeps_63,  check_url_row},
    ip   = {"IP",   key::ip_enable,   key::ip_mode,   blank_packet, keeps_255, check_ip_row},
    ipv6 = {"IPv6", key::ipv6_enable, key::ipv6_mode, blank_packet, keeps_255, check_ipv6_row};

constexpr List list_of(const Family &family, const char *refused_mode, const char *rows_name, const char *key,
                       const char *mirror = nullptr) {
  return {family.name, rows_name, key, mirror, family.placeholder,
          {first_255, first_255, first_255}, {family.kept_by_set, keeps_63},
          {family.enable_key, family.mode_key, refused_mode}, family.check};
}
constexpr const char *while_white = "1", *while_black = "0"; // the modes that leave a list unused
constexpr List
    black_mac  = list_of(mac,  while_white, "MACBlackFilter",  key::mac_black,           "WlanMACFilterRules"),
    white_mac  = list_of(mac,  while_black, "MACWhiteFilter",  key::mac_white,           key::wlan_mac_white),
    black_url  = list_of(url,  while_white, "URLBlackFilter",  key::url_black),
    white_url  = list_of(url,  while_black, "URLWhiteFilter",  key::url_white),
    black_ip   = list_of(ip,   while_white, "IPBlackFilter",   key::ip_black),
    white_ip   = list_of(ip,   while_black, "IPWhiteFilter",   key::ip_white),
    black_ipv6 = list_of(ipv6, while_white, "IPV6BlackFilter", "IPPort6FilterRules"),
    white_ipv6 = list_of(ipv6, while_black, "IPV6WhiteFilter", "IPPort6FilterWhiteRules");
// clang-format on

} // namespace

} // namespace kova::security

using namespace kova;
using namespace kova::security;

#include "src/security/filters.def"
