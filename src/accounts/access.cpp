// SNMP, the web interface's lock, the ping watchdog, and checks of the diagnostics objects.
#include "platform/nvram.h"
#include "src/frame/rows.hpp"
#include "src/frame/trace.hpp"

#include <kova/accounts.h>
#include <kova/security.h>

#include <cstdlib>
#include <cstring>
#include <initializer_list>

namespace kova::accounts {

namespace {

// ---- SNMP

constexpr int snmp_rules = 24;
constexpr const char *snmp_enable_key = "snmp_enable";

int store_and_start_snmp(const char *key, const char *value) {
  store(key, value);
  kova_trigger_cpe_event("ce_snmp_start");
  kova_trigger_cpe_event("fw_sip_rule");
  return 0;
}

struct SnmpCredential {
  const char *key;
  int item;
  const char *disabled, *wrong_length, *invalid; // debug messages
};
constexpr SnmpCredential user_name = {
    "snmp_username", 2, "[TR069][Error]SNMP disable, don't set SNMP username.\n",
    "[TR069][Error] SNMP username input 1 ~ 32 word.\n", "[TR069][Error] SNMP username is invalid.\n"};
constexpr SnmpCredential password = {"snmp_password", 4,
                                     "[TR069][Error]SNMP disable, don't set SNMP password.\n",
                                     "[TR069][Error] SNMP password input 8 ~ 32 word.\n",
                                     "[TR069][Error] SNMP password can't input invalid characters.\n"};

int set_credential(const SnmpCredential &credential, const char *value) {
  value = text_or_empty(value);
  if (load_switch(snmp_enable_key) == 0) return refuse(credential.disabled);
  const int code = tarn_check_param(snmp_rules, value, credential.item);
  if (code < 0) return refuse(code == -1 ? credential.wrong_length : credential.invalid);
  return store_and_start_snmp(credential.key, value);
}

// ---- Diagnostics objects

int check_host(const char *value) {
  constexpr Rule host_rule = rule_of(21, 1);
  return passes(host_rule, text_or_empty(value)) ? 0 : -1;
}

int check_interface(const char *value) {
  for (const char *known :
       {"InternetGatewayDevice.WANDevice.1.WANConnectionDevice.1.WANIPConnection.1",
        "InternetGatewayDevice.LANDevice.1.LANHostConfigManagement.IPInterface.1", "lo", ""})
    if (equal(text_or_empty(value), known)) return 0;
  return -1;
}

// ---- Ping watchdog

int set_watchdog(const char *key, const char *value, const char *stored) {
  if (checkXSSattack(value) < 0) return -1;
  store(key, text_or_empty(stored));
  restartPingWatchdog();
  return 0;
}

} // namespace

} // namespace kova::accounts

using namespace kova;
using namespace kova::accounts;

STORED(kovaGetSNMPEnable, snmp_enable_key)
int kovaSetSNMPEnable(const char *value) {
  value = text_or_empty(value);
  if (!passes(kova::rule_of(snmp_rules, 0), value))
    return refuse("[TR069][Error] SNMP enable value error.\n");
  return store_and_start_snmp(snmp_enable_key, value);
}
STORED(kovaGetSNMPUserName, user_name.key)
int kovaSetSNMPUserName(const char *value) {
  return set_credential(user_name, value);
}
CONSTANT(kovaGetSNMPPassword, " ")
int kovaSetSNMPPassword(const char *value) {
  return set_credential(password, value);
}

int kovaGetWebLockTimeSettings(char *buf, unsigned int buflen) {
  Text seconds;
  return load("WebTimeout", seconds) ? answer(seconds, buf, buflen) : 0;
}

int kovaSetWebLockTimeSettings(const char *value) {
  constexpr long least = 300, most = 65535;
  if (value == nullptr) return refuse("[TR069][Error] NULL value for web lock time.");
  if (value[std::strspn(value, "0123456789")] != '\0')
    return refuse("[TR069][Error] Timeout setting must be an integer digital.");
  const long seconds = std::strtol(value, nullptr, 10);
  if (seconds < least || seconds > most)
    return refuse("[TR069][Error] Please enter the number of seconds between 300 to 65535.");
  store("WebTimeout", value);
  return 0;
}

int kovasetDiagnosticsHost(const char *value) {
  return check_host(value);
}
int kovasetTraceRouteDiagnosticsHost(const char *value) {
  return check_host(value);
}
int kovasetIPingInterface(const char *value) {
  return check_interface(value);
}
int kovasetTraceRouteDiagnosticsInterface(const char *value) {
  return check_interface(value);
}

int kovaGetDiagnosticsRouteHopsHopHost(int index, char *out, unsigned int outlen) {
  const Text hosts = load("ROUTEHOPS_HOPHOST");
  const int count = firewall_getRuleNums(hosts);
  if (index < 1 || index > count) {
    dbg_trace("Rule index %d out of range %d!\n", index, count);
    return -1;
  }
  if (getNthField(index - 1, hosts, ';', out, static_cast<int>(outlen)) == 0) return 0;
  dbg_trace("Fail to get rule %d from rules '%s'!\n", index, hosts.chars);
  return -1;
}

int setTR069PingWatchdogEnable(const char *value) {
  const bool on = !is_empty(value) && !equal(value, "0");
  dbg_trace(on ? "enable pingWatchdog\n" : "disable pingWatchdog\n");
  return set_watchdog("pingWdEnable", value, on ? "1" : "0");
}

#define WATCHDOG(getter, setter, key)                                                                        \
  STORED(getter, key)                                                                                        \
  int setter(const char *value) {                                                                            \
    return set_watchdog(key, value, value);                                                                  \
  }
// clang-format off
STORED(getTR069PingWatchdogEnable, "pingWdEnable")
WATCHDOG(getTR069PingWatchdogIPAddress,            setTR069PingWatchdogIPAddress,            "pingWdIpAddress")
WATCHDOG(getTR069PingWatchdogTimeout,              setTR069PingWatchdogTimeout,              "pingWdTimeOut")
WATCHDOG(getTR069PingWatchdogCount,                setTR069PingWatchdogCount,                "pingWdCount")
WATCHDOG(getTR069PingWatchdogFailureCountToReboot, setTR069PingWatchdogFailureCountToReboot, "pingWdRebootCount")
