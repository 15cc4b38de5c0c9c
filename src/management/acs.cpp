// The management server's settings, and how the web pages are reached.
#include "platform/keys.hpp"
#include "src/frame/events.hpp"
#include "src/frame/rows.hpp"
#include "src/frame/shell.hpp"
#include "src/management/reach.hpp"

#include <kova/management.h>

#include <cstdio>

namespace kova::management {

namespace {

int keep(Key key, const char *value, const Condition &condition) {
  return condition.holds(text_or_empty(value)) ? set_as_given(key, value) : -1;
}

int set(Key key, const char *value, Rule rule) {
  return passes_unmarked(rule, text_or_empty(value)) ? set_as_given(key, value) : -1;
}

int set_switch(Key key, const char *value, Rule rule) {
  const char *digit = boolean_setting(value);
  return digit == nullptr ? -1 : set(key, digit, rule);
}

// Judges the switch that the text stands for, but stores the text itself.
int set_switch_as_given(Key key, const char *value, Rule rule) {
  const char *digit = boolean_setting(value);
  return digit != nullptr && passes_unmarked(rule, digit) ? set_as_given(key, value) : -1;
}

int set_interval(Key key, const char *value, Rule rule) {
  // The primary's switch counts for both instances.
  return equal(load(key::inform_enable), "0") ? -1 : set(key, value, rule);
}

// ---- The web pages

int restart_web_service() {
  kova_trigger_cpe_event(event::web_service);
  pause_for(3);
  kova_trigger_cpe_event(event::access_filter);
  kova_trigger_cpe_event("fw_remote_web_access_filter");
  return 0;
}

int set_https_port(Key key, const char *value, Rule rule) {
  return set(key, value, rule) == 0 ? restart_web_service() : -1;
}

int set_https(Key key, const char *value, Rule rule) {
  return is_empty(value) ? -1 : set_https_port(key, setting_unless_off(value), rule);
}

int set_https_from_wan(Key key, const char *value, const Condition &condition) {
  value = text_or_empty(value);
  if (!condition.holds(value)) return -1;
  store(key, setting_unless_off(value));
  kova_trigger_cpe_event(event::access_filter);
  return 0;
}

} // namespace

} // namespace kova::management

using namespace kova;
using namespace kova::management;

#include "src/management/acs.def"

int kovaGetTR069ConnectionRequestURL(char *buf, unsigned int buflen) {
  constexpr int primary_port = 7547, secondary_port = 7550;
  char interface[interface_name_size] = {};
  management_interface(interface);
  char address[16] = {};
  Text url;
  if (get_interface_ip(interface, address, sizeof address) == 0) {
    std::snprintf(url.chars, Text::size - 1, "http://%s:%d", address,
                  gSecondaryInstance != 0 ? secondary_port : primary_port);
    store(OWN("TR_CR_PATH"), url);
  }
  return answer(url, buf, buflen);
}

int kovaSetTR069ConnectionRequestURL(const char *value) {
  return set_as_given(OWN("TR_CR_PATH"), value);
}
