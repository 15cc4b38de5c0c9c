// The operation mode and the VPN as single settings.
#include "platform/keys.hpp"
#include "platform/webs.h"
#include "src/frame/rows.hpp"
#include "src/frame/trace.hpp"

#include <kova/wan.h>

namespace kova::wan {

namespace {

int set(const char *key, const char *value, Rule rule) {
  constexpr int writable = 1;
  if (value == nullptr || !passes(rule, value) || OperMode_checkKeyWritableFromNvram(key) != writable)
    return -1;
  store(key, value);
  return 0;
}

// Only with a VPN that carries layer 3.
int set_in_l3(const char *key, const char *value, Rule rule) {
  return tarnIsL3Vpn() == 1 ? set(key, value, rule) : -1;
}

} // namespace

} // namespace kova::wan

using namespace kova;
using namespace kova::wan;

#include "src/wan/oper_mode.def"

int kovasetOperModeApply(const char *value) {
  if (value == nullptr) return -1;
  if (!equal(value, "1") || kovaTr069CheckOperModeNvram() == 0) return 0;
  dbg_trace("%s() kovaTr069CheckOperModeNvram() fail\n", __func__);
  return -1;
}

int kovaGetOperModeApply(char *, unsigned int) {
  return 0;
}
