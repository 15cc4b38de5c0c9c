// DMZ and SIP ALG: what NAT does, announced to the firewall.
#include "platform/keys.hpp"
#include "platform/webs.h"
#include "src/frame/events.hpp"
#include "src/frame/rows.hpp"
#include "src/frame/trace.hpp"
#include "src/wan/dmz_rows.hpp"
#include "src/wan/indexes.hpp"
#include "src/wan/wan_mode.hpp"

#include <arpa/inet.h>
#include <kova/wan.h>

namespace kova::wan {

namespace {

bool is_router_mode() {
  if (load_number(key::oper_mode) != router_mode) return false;
  dbg_trace("[TR069][Error]Operation mode is Router mode can not set DMZ\n");
  return true;
}

int refuse_value(const char *setting, const char *value) {
  dbg_trace("Invalid value '%s' for %s!\n", value, setting);
  return -1;
}

// "true" or "false" as the stored digit; NULL for any other text.
const char *switch_digit(const char *value) {
  if (equal(value, "true")) return "1";
  return equal(value, "false") ? "0" : nullptr;
}

int store_and_announce(const char *key, const char *value) {
  if (store(key, value) < 0) {
    dbg_trace("Fail to set %s!\n", key);
    return -1;
  }
  return _notifyFirewallNatChanged();
}

// -1 when nothing is stored.
int answer_if_stored(const char *key, const char *text, char *buf, unsigned int buflen) {
  if (load(key).empty()) {
    dbg_trace("Fail to get %s!\n", key);
    return -1;
  }
  return answer(text, buf, buflen);
}

// The ACL modes that keep remote management out.
bool acl_avoids_remote_management() {
  const int mode = load_number(key::acl_enable);
  return mode == 1 || mode == 3 || mode == 4;
}

int set_unmarked(const char *key, const char *value, Rule rule) {
  value = text_or_empty(value);
  if (!passes_unmarked(rule, value)) return -1;
  store(key, value);
  kova_nat_cfg_changed();
  return 0;
}

int set_alg(const char *key, const char *value, Rule rule) {
  constexpr int refused = -1; // the rule's other complaints are not for this setting
  value = text_or_empty(value);
  if (ask(rule, value) == refused || !is_zero_or_one(value)) {
    dbg_trace("[TR069][ALG]Invalid value '%s' for %s!\n", value, key);
    return -1;
  }
  store(key, value);
  return _notifyFirewallNatChanged();
}

} // namespace

} // namespace kova::wan

using namespace kova;
using namespace kova::wan;

#include "src/wan/dmz.def"

int _notifyFirewallNatChanged(void) {
  kova_trigger_cpe_event(event::nat_changed);
  return 0;
}

int kovaGetWANConnectionDMZEnable(int dev, int conn, int ipconn, char *buf, unsigned int buflen) {
  if (!indexes_are_1(dev, conn, ipconn)) return -1;
  return answer_if_stored(key::dmz_enable, equal(load(key::dmz_enable), "0") ? "false" : "true", buf, buflen);
}

int kovaSetWANConnectionDMZEnable(int dev, int conn, int ipconn, const char *value) {
  if (!indexes_are_1(dev, conn, ipconn) || is_router_mode()) return -1;
  value = text_or_empty(value);
  const char *digit = switch_digit(value);
  return digit == nullptr ? refuse_value(key::dmz_enable, value) : store_and_announce(key::dmz_enable, digit);
}

int kovaGetWANConnectionDMZHostIPAddress(int dev, int conn, int ipconn, char *buf, unsigned int buflen) {
  if (!indexes_are_1(dev, conn, ipconn)) return -1;
  return answer_if_stored(key::dmz_address, load(key::dmz_address), buf, buflen);
}

int kovaSetWANConnectionDMZHostIPAddress(int dev, int conn, int ipconn, const char *value) {
  if (!indexes_are_1(dev, conn, ipconn) || is_router_mode()) return -1;
  value = text_or_empty(value);
  in_addr address;
  if (inet_pton(AF_INET, value, &address) != 1) return refuse_value(key::dmz_address, value);
  if (equal(load(key::dmz_enable), "0")) { // a missing switch allows
    dbg_trace("DMZEnable false!\n");
    return -1;
  }
  if (checkDMZParam(value) < 0) {
    dbg_trace("DMZAddress Input '%s' Param Fail!\n", value);
    return -1;
  }
  return store_and_announce(key::dmz_address, value);
}

int kovaGetWANConnectionDMZAvoidRemoteManagement(int dev, int conn, int ipconn, char *buf,
                                                 unsigned int buflen) {
  if (!indexes_are_1(dev, conn, ipconn)) return -1;
  return answer(acl_avoids_remote_management() ? "true" : "false", buf, buflen);
}

int kovaSetWANConnectionDMZAvoidRemoteManagement(int dev, int conn, int ipconn, const char *value) {
  if (!indexes_are_1(dev, conn, ipconn)) return -1;
  value = text_or_empty(value);
  const char *digit = switch_digit(value);
  if (digit == nullptr) return refuse_value("AvoidRemoteManagement", value);
  if (equal(digit, "1") != acl_avoids_remote_management()) store(key::acl_enable, digit);
  return _notifyFirewallNatChanged(); // also when there was nothing to store
}
