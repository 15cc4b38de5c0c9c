// DMZ and SIP ALG: what NAT does, announced to the firewall.
#include "platform/nvram.h"
#include "platform/webs.h"
#include "src/frame/rows.hpp"
#include "src/frame/shell.hpp"
#include "src/frame/trace.hpp"
#include "src/wan/indexes.hpp"
#include "src/wan/wan_mode.hpp"

#include <arpa/inet.h>

#include <cstdio>
#include <cstdlib>

using namespace kova;

namespace {

constexpr const char *enable_key = "DMZEnable", *host_key = "DMZAddress", *acl_key = "AclEnable";

bool is_router_mode() {
  if (load_number("oper_mode") != wan::router_mode) return false;
  dbg_trace("[TR069][Error]Operation mode is Router mode can not set DMZ\n");
  return true;
}

int refuse(const char *setting, const char *value) {
  dbg_trace("Invalid value '%s' for %s!\n", value, setting);
  return -1;
}

// "true" or "false" as the stored digit; NULL for any other text.
const char *switch_digit(const char *value) {
  if (equal(value, "true")) return "1";
  return equal(value, "false") ? "0" : nullptr;
}

int store_and_announce(const char *key, const char *value) {
  if (nvram_bufset(static_cast<int>(Section::config), key, value) < 0) {
    dbg_trace("Fail to set %s!\n", key);
    return -1;
  }
  return _notifyFirewallNatChanged();
}

// What is stored, or -1 when nothing is.
int answer_stored(const char *key, const char *text, char *buf, unsigned int buflen) {
  if (load(key).empty()) {
    dbg_trace("Fail to get %s!\n", key);
    return -1;
  }
  return answer(text, buf, buflen);
}

// The ACL modes that keep remote management out.
bool acl_avoids_remote_management() {
  const int mode = load_number(acl_key);
  return mode == 1 || mode == 3 || mode == 4;
}

int set_plain(const char *key, int item, const char *value) {
  constexpr int rules = 11;
  if (!passes_unmarked(kova::rule_of(rules, item), text_or_empty(value))) return -1;
  store(key, text_or_empty(value));
  kova_nat_cfg_changed();
  return 0;
}

} // namespace

int _notifyFirewallNatChanged(void) {
  kova_trigger_cpe_event("fw_nat_cfg changed");
  return 0;
}

int kovaGetWANConnectionDMZEnable(int dev, int conn, int ipconn, char *buf, unsigned int buflen) {
  if (!wan::indexes_are_1(dev, conn, ipconn)) return -1;
  return answer_stored(enable_key, equal(load(enable_key), "0") ? "false" : "true", buf, buflen);
}

int kovaSetWANConnectionDMZEnable(int dev, int conn, int ipconn, const char *value) {
  if (!wan::indexes_are_1(dev, conn, ipconn) || is_router_mode()) return -1;
  value = text_or_empty(value);
  const char *digit = switch_digit(value);
  return digit == nullptr ? refuse(enable_key, value) : store_and_announce(enable_key, digit);
}

int kovaGetWANConnectionDMZHostIPAddress(int dev, int conn, int ipconn, char *buf, unsigned int buflen) {
  if (!wan::indexes_are_1(dev, conn, ipconn)) return -1;
  return answer_stored(host_key, load(host_key), buf, buflen);
}

int kovaSetWANConnectionDMZHostIPAddress(int dev, int conn, int ipconn, const char *value) {
  if (!wan::indexes_are_1(dev, conn, ipconn) || is_router_mode()) return -1;
  value = text_or_empty(value);
  in_addr address;
  if (inet_pton(AF_INET, value, &address) != 1) return refuse(host_key, value);
  if (equal(load(enable_key), "0")) { // a missing switch allows
    dbg_trace("DMZEnable false!\n");
    return -1;
  }
  if (checkDMZParam(value) < 0) {
    dbg_trace("DMZAddress Input '%s' Param Fail!\n", value);
    return -1;
  }
  return store_and_announce(host_key, value);
}

int kovaGetWANConnectionDMZAvoidRemoteManagement(int dev, int conn, int ipconn, char *buf,
                                                 unsigned int buflen) {
  if (!wan::indexes_are_1(dev, conn, ipconn)) return -1;
  return answer(acl_avoids_remote_management() ? "true" : "false", buf, buflen);
}

int kovaSetWANConnectionDMZAvoidRemoteManagement(int dev, int conn, int ipconn, const char *value) {
  if (!wan::indexes_are_1(dev, conn, ipconn)) return -1;
  value = text_or_empty(value);
  const char *digit = switch_digit(value);
  if (digit == nullptr) return refuse("AvoidRemoteManagement", value);
  if (equal(digit, "1") != acl_avoids_remote_management()) store(acl_key, digit);
  return _notifyFirewallNatChanged(); // also when there was nothing to store
}

int setTR069DMZEnable(const char *value) {
  return set_plain(enable_key, 1, value);
}
int setTR069DMZHostAddress(const char *value) {
  return set_plain(host_key, 2, value);
}
STORED(getTR069DMZEnable, enable_key)
STORED(getTR069DMZHostAddress, host_key)

STORED(kovaGetALGSIPEnable, "SIPAlgEnable")
int kovaSetALGSIPEnable(const char *value) {
  constexpr int rules = 31, item = 1, refused = -1; // the rule's other complaints are not for this setting
  value = text_or_empty(value);
  if (tarn_check_param(rules, value, item) == refused) {
    dbg_trace("[TR069][ALG]Error\n");
    return -1;
  }
  if (!is_zero_or_one(value)) {
    dbg_trace("[TR069][ALG]Invalid value '%s' for SIPAlgEnable!\n", value);
    return -1;
  }
  store("SIPAlgEnable", value);
  return _notifyFirewallNatChanged();
}
