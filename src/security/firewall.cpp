// The security level, the four switches that it stands for, and who may reach the device.
#include "platform/keys.hpp"
#include "platform/webs.h"
#include "src/frame/events.hpp"
#include "src/frame/rows.hpp"
#include "src/lists/fields.hpp"
#include "src/security/acl.hpp"

#include <kova/security.h>

#include <cstdio>

namespace kova::security {

namespace {

// The switches in the order of the stored custom choice, and of a level's writes.
constexpr const char *switch_keys[] = {key::acl_enable, "SPIFWEnabled", "BlockPortScan", "BlockSynFlood"};
enum Switch { acl, spi_firewall, port_scan, syn_flood, switch_count };
constexpr const char *custom_key = "WebsSysFirewallCustom", *choice_key = "WebsSysFirewallCustomSettings";

// What the predefined levels "0" to "2" switch on. None of them switches the ACL on.
constexpr const char *levels[][switch_count] = {
    {"0", "0", "0", "0"}, {"0", "0", "1", "1"}, {"0", "1", "1", "1"}};
constexpr const char *level_names[] = {"0", "1", "2"}, *custom_level = "3";

// The custom choice, of which missing fields are empty.
struct Choice : Fields<switch_count, 32> {
  Choice() : Fields(load(choice_key)) {}
};

bool is_on(const char *key) {
  return load_switch(key) != 0;
}

bool is_level(const char *const (&level)[switch_count]) {
  for (int i = 0; i < switch_count; ++i)
    if (is_on(switch_keys[i]) != equal(level[i], "1")) return false;
  return !is_on(custom_key);
}

template <typename Values>
void store_level(const Values &values, const char *custom) {
  for (int i = 0; i < switch_count; ++i)
    store(switch_keys[i], values[i]);
  store(custom_key, custom);
}

// A switch by itself makes the level custom, and is remembered with the rest of the choice.
class choose {
public:
  explicit choose(Switch which) : which_(which) {}
  int operator()(const char *key, const char *value, const Condition &) const {
    const Choice choice;
    value = text_or_empty(value);
    if (websInputValueRule(value, 0, 1) == 0) return -1;
    if (which_ == acl && (leading_number(value) < 0 || leading_number(value) > 1)) return -1;
    store(key, value);
    store(custom_key, "1");
    const char *fields[switch_count];
    for (int i = 0; i < switch_count; ++i)
      fields[i] = i == which_ ? value : choice[i];
    Text changed;
    std::snprintf(changed.chars, Text::size, "%.60s,%.60s,%.60s,%.60s", fields[acl], fields[spi_firewall],
                  fields[port_scan], fields[syn_flood]);
    store(choice_key, changed);
    return 0;
  }

private:
  Switch which_;
};

int apply_access() {
  kova_trigger_cpe_event(event::access_filter);
  return 0;
}

int set_and_apply_access(const char *key, const char *value, const Condition &condition) {
  value = text_or_empty(value);
  if (!condition.holds(value)) return -1;
  store(key, value);
  return apply_access();
}

} // namespace

} // namespace kova::security

using namespace kova;
using namespace kova::security;

int kovaGetSystemSecuritySettingsSecurityLevel(char *buf, unsigned int buflen) {
  for (int i = 0; i < 3; ++i)
    if (is_level(levels[i])) return answer(level_names[i], buf, buflen);
  return answer(custom_level, buf, buflen);
}

int kovasetSystemSecuritySettingsSecurityLevel(const char *value) {
  value = text_or_empty(value);
  const int number = leading_number(value); // 0 for a text without a number
  if (number < 0 || number > 3) return -1;
  // The text decides, not its number: "01" changes nothing, and is no error.
  for (int i = 0; i < 3; ++i)
    if (equal(value, level_names[i])) store_level(levels[i], "0");
  if (equal(value, custom_level)) store_level(Choice(), "1");
  return 0;
}

#include "src/security/firewall.def"
