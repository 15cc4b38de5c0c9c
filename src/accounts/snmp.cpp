// The SNMP service. Every accepted setting starts it anew.
#include "platform/keys.hpp"
#include "src/frame/events.hpp"
#include "src/frame/rows.hpp"
#include "src/frame/trace.hpp"

#include <kova/accounts.h>

namespace kova::snmp {

namespace {

int store_and_start(const char *key, const char *value) {
  store(key, value);
  kova_trigger_cpe_event("ce_snmp_start");
  kova_trigger_cpe_event(event::sip_rules);
  return 0;
}

int set_enable(const char *key, const char *value, Rule rule) {
  value = text_or_empty(value);
  if (!passes(rule, value)) return refuse("[TR069][Error] SNMP enable value error.\n");
  return store_and_start(key, value);
}

// Who may ask; set only while the service is on.
struct Credential {
  const char *disabled, *wrong_length, *invalid; // debug messages
  int operator()(const char *key, const char *value, Rule rule) const {
    value = text_or_empty(value);
    if (load_switch(key::snmp_enable) == 0) return refuse(disabled);
    const int code = ask(rule, value);
    if (code < 0) return refuse(code == -1 ? wrong_length : invalid);
    return store_and_start(key, value);
  }
};
constexpr Credential user_name = {"[TR069][Error]SNMP disable, don't set SNMP username.\n",
                                  "[TR069][Error] SNMP username input 1 ~ 32 word.\n",
                                  "[TR069][Error] SNMP username is invalid.\n"},
                     password = {"[TR069][Error]SNMP disable, don't set SNMP password.\n",
                                 "[TR069][Error] SNMP password input 8 ~ 32 word.\n",
                                 "[TR069][Error] SNMP password can't input invalid characters.\n"};

} // namespace

} // namespace kova::snmp

using namespace kova;
using namespace kova::snmp;

#include "src/accounts/snmp.def"
