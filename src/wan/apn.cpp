// The APN profiles' accessors: one set, stamped for each profile.
#include "platform/keys.hpp"
#include "src/frame/rows.hpp"
#include "src/frame/trace.hpp"
#include "src/frame/tree.hpp"
#include "src/transaction/park.hpp"
#include "src/wan/apn_rows.hpp"
#include "src/wan/settings.hpp"

#include <kova/wan.h>

#include <cstdio>

namespace kova::wan {

namespace {

struct Leaf {
  int profile;
  const char *name;
};
constexpr Leaf leaf(int profile, const char *name) {
  return {profile, name};
}

Text path_of(Leaf leaf) {
  Text path;
  std::snprintf(path.chars, Text::size, "/tarn/cm_config/apnprofile/apn%d/%s", leaf.profile, leaf.name);
  return path;
}

int tell(Leaf leaf, char *buf, unsigned int buflen) {
  return get_tree_leaf(path_of(leaf), buf, buflen);
}

using Reaction = void();

int set(Leaf leaf, const char *value, Reaction *react) {
  if (!store_tree_leaf(path_of(leaf), value)) {
    dbg_trace("[TR069]set APN%d Error, %s(%s) value error\n", leaf.profile, leaf.name, value);
    return -1;
  }
  react();
  return 0;
}

int update(Leaf leaf, const char *value, const Condition &) {
  return set(leaf, text_or_empty(value), mrhd_update_apncfg);
}

// Stores the number alone: what follows it is dropped.
int update_number(Leaf leaf, const char *value, const Condition &number) {
  value = text_or_empty(value);
  if (!number.holds(value)) return -1;
  return set(leaf, NumberText(leading_number(value)), mrhd_update_apncfg);
}

// The checkers have judged: only what must not be empty is refused.
int restart_with(Leaf leaf, const char *value, const Condition &condition) {
  if (is_empty(value) && !condition.takes_empty) return -1;
  return set(leaf, text_or_empty(value), mrhd_opermode_network_restart);
}

constexpr int always_enabled = 1; // profile 1: without it the device would be out of reach
int set_enable(Leaf leaf, const char *value, const Condition &) {
  value = text_or_empty(value);
  if (leaf.profile == always_enabled) return equal(value, "1") ? 0 : -1;
  return is_zero_or_one(value) ? set(leaf, value, mrhd_update_apncfg) : -1;
}

constexpr int takes_any_use = 8; // profile 8: its setter stores any text
int set_use(Leaf leaf, const char *value, const Condition &use) {
  if (leaf.profile != takes_any_use && !use.holds(text_or_empty(value))) return -1;
  return restart_with(leaf, value, use);
}

int check(const char *name, const char *value, const Condition &condition, Place place) {
  return is_empty(name) || is_empty(value) || !condition.holds(value) ? -1 : park(place, name, value);
}

int set_common_mtu(const char *key, const char *value, Rule rule) {
  return set_mtu(key, value, rule, [] { kova_trigger_cpe_event("ce_set_mtu"); });
}

} // namespace

} // namespace kova::wan

using namespace kova;
using namespace kova::wan;

#include "src/wan/apn.def"
