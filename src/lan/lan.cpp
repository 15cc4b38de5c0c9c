// LAN address, DHCP server, pool and DNS servers as parameters of the set transaction.
#include "platform/keys.hpp"
#include "platform/webs.h"
#include "src/frame/rows.hpp"
#include "src/lan/lan_rows.hpp"
#include "src/lan/lan_rules.hpp"
#include "src/transaction/park.hpp"

#include <kova/lan.h>

namespace kova::lan {

namespace {

int store_and_restart(const char *key, const char *value) {
  store(key, value);
  mrhd_restart_dhcp_server();
  return 0;
}

int set(const char *key, const char *value, Rule rule) {
  value = text_or_empty(value);
  return passes(rule, value) ? store_and_restart(key, value) : -1;
}

int set_judged(const char *key, const char *value, bool takes_empty) {
  return is_empty(value) && !takes_empty ? -1 : store_and_restart(key, text_or_empty(value));
}

// The rule is not asked of an empty value.
int check(const char *name, const char *value, bool (*holds)(const char *), Rule rule, Place place) {
  if (is_empty(name) || value == nullptr || !holds(value)) return -1;
  return *value == '\0' || passes(rule, value) ? park(place, name, value) : -1;
}

// The DNS option: the store holds the inverse of what is told and set.
const char *inverse(const char *option) {
  return equal(option, "0") ? "1" : "0";
}
int tell(const char *key, char *buf, unsigned int buflen) {
  return answer(inverse(load(key)), buf, buflen);
}
struct Allowed {
  constexpr Allowed(const Condition &condition_, Rule rule_) : condition(condition_), rule(rule_) {}
  const Condition &condition;
  Rule rule;
};
int set_inverse(const char *key, const char *value, Allowed) {
  return is_empty(value) ? -1 : store_and_restart(key, inverse(value));
}
int check(const char *name, const char *value, Allowed allowed, Place place) {
  return check(name, value, allowed.condition.holds, allowed.rule, place);
}

} // namespace

bool same_address(const char *a, const char *b) {
  return websIP2Num(a) == websIP2Num(b);
}

void drop_rules_on_lan_addresses() {
  store(key::dmz_enable, "0");
  store(key::dmz_address, "");
  store(key::port_forward_enable, "0");
  store(key::port_forward_rules, "");
  store(key::ip_enable, "0");
  store(key::ip_black, "");
  store(key::ip_white, "");
}

} // namespace kova::lan

using namespace kova;
using namespace kova::lan;

#include "src/lan/lan.def"
