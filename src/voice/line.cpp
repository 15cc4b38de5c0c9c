// The state of the telephone line, and the apply that restarts its service.
#include "src/voice/line.hpp"

#include "platform/keys.hpp"
#include "platform/nvram.h"
#include "src/frame/events.hpp"
#include "src/frame/settings.hpp"
#include "src/frame/shell.hpp"
#include "src/frame/trace.hpp"

#include <kova/voice.h>

#include <cstdio>
#include <cstdlib>

namespace kova::voice {

namespace {

// What the voice service wrote, at most 63 bytes. False when there is no file.
bool read_status(const char *path, char (&status)[64]) {
  FILE *file = std::fopen(path, "r");
  if (file == nullptr) return false;
  std::size_t length = std::fread(status, 1, sizeof status - 1, file);
  std::fclose(file);
  while (length > 0 && status[length - 1] == '\n')
    --length;
  status[length] = '\0';
  return true;
}

// Settings are never pushed into a call. Without a file there is no line to be busy.
bool is_busy() {
  char state[64] = {};
  if (!read_status(call_file, state) || equal(state, "Idle")) return false;
  dbg_trace("[VoIP]VoIP line is busy,not allow to change SIP settings........\n");
  return true;
}

bool is_too_soon(long up_time) {
  constexpr long least_interval = 15; // seconds
  const Text last = load(runtime("SIPLastRunTime"));
  if (last.empty() || up_time - std::atol(last) >= least_interval) return false; // NOLINT(cert-err34-c)
  dbg_trace("[Error]The interval between VoIP settings must be 15 seconds at least.\n");
  return true;
}

} // namespace

int answer_status(const char *path, char *buf, unsigned int buflen) {
  char status[64] = {};
  const bool known = read_status(path, status) && *status != '\0';
  return answer(known ? status : "None", buf, buflen);
}

} // namespace kova::voice

using namespace kova;
using namespace kova::voice;

int kovaGetPCSCFServerStatus(char *buf, unsigned int buflen) {
  char registration[64] = {};
  read_status(registration_file, registration);
  const Text address = load(runtime("pcscf_addr_voip"));
  const bool in_use = !address.empty() && !equal(address, "0.0.0.0") && equal(registration, "Registered") &&
                      equal(load(key::sip_server_mode), "1");
  return answer(in_use ? address : "None", buf, buflen);
}

int kovaSetVoIPApply(const char *value) {
  const bool enabled = load_switch(key::sip_enable) != 0;
  if (is_busy()) return -1;
  const long up_time = tarn_get_uptime();
  if (is_too_soon(up_time)) return -1;
  if (!equal(text_or_empty(value), "1")) return refuse("[Error]SIP Apply Error.\n");
  if (enabled) {
    store(runtime("SIPAutoStartReg"), "1");
    store(runtime("SIPLastRunTime"), NumberText(static_cast<int>(up_time)));
    run("sc ipchg");
    run("/etc/sysconfig/script/firewall_clear_rule.sh SIP");
  } else {
    run("sc disable 1"); // and the 15 seconds do not begin anew
  }
  kova_trigger_cpe_event(event::sip_rules);
  return 0;
}
