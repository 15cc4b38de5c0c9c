// The ping watchdog's settings: anything but markup.
#include "src/frame/rows.hpp"

#include <kova/accounts.h>

namespace kova::watchdog {

namespace {

int set_text(const char *key, const char *value, const Condition &condition) {
  value = text_or_empty(value);
  if (!condition.holds(value)) return -1;
  store(key, value);
  restartPingWatchdog();
  return 0;
}

int set_switch(const char *key, const char *value, const Condition &condition) {
  value = text_or_empty(value);
  const bool on = *value != '\0' && !equal(value, "0");
  dbg_trace(on ? "enable pingWatchdog\n" : "disable pingWatchdog\n");
  return condition.holds(value) ? set_text(key, on ? "1" : "0", anything) : -1;
}

} // namespace

} // namespace kova::watchdog

using namespace kova;
using namespace kova::watchdog;

#include "src/accounts/watchdog.def"
