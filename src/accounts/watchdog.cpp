// The ping watchdog's settings: anything but markup.
#include "src/frame/rows.hpp"

#include <kova/accounts.h>

namespace kova::watchdog {

namespace {

int set(const char *key, const char *value, const char *stored) {
  if (checkXSSattack(value) < 0) return -1;
  store(key, stored);
  restartPingWatchdog();
  return 0;
}

int set_unmarked(const char *key, const char *value, const Condition &) {
  return set(key, value, text_or_empty(value));
}

int set_switch(const char *key, const char *value, const Condition &) {
  const bool on = !is_empty(value) && !equal(value, "0");
  dbg_trace(on ? "enable pingWatchdog\n" : "disable pingWatchdog\n");
  return set(key, value, on ? "1" : "0");
}

} // namespace

} // namespace kova::watchdog

using namespace kova;
using namespace kova::watchdog;

#include "src/accounts/watchdog.def"
