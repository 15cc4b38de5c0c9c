// The operation mode and the VPN as parameters of the set transaction.
#include "platform/keys.hpp"
#include "src/frame/rows.hpp"
#include "src/transaction/park.hpp"
#include "src/wan/settings.hpp"

#include <kova/wan.h>

namespace kova::wan {

namespace {

// The rule is left to the checker and the batch validation.
int store_and_restart(const char *key, const char *value, Rule) {
  if (value == nullptr) return -1;
  store(key, value);
  store(runtime(key), value);
  mrhd_opermode_network_restart();
  return 0;
}

int set(const char *key, const char *value, Rule rule) {
  return value != nullptr && passes(rule, value) ? store_and_restart(key, value, rule) : -1;
}

int check(const char *name, const char *value, Rule rule, Place place) {
  return is_empty(name) || is_empty(value) || !passes(rule, value) ? -1 : park(place, name, value);
}

} // namespace

} // namespace kova::wan

using namespace kova;
using namespace kova::wan;

#include "src/wan/wan_setting.def"
