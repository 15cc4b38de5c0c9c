// CPE events: named messages to the device's event dispatcher.
#include "src/frame/events.hpp"

#include "src/frame/shell.hpp"
#include "src/frame/text.hpp"

#include <kova/frame.h>

#include <cstdio>
#include <cstring>
#include <iterator>

namespace {

constexpr const char *methods[] = {"notify", "call", "is_busy"};
static_assert(std::size(methods) == KOVA_CLASS_MAX);

constexpr struct {
  const char *name, *secondary; // the name that the secondary instance uses
} events[] = {
    {"ce_system_reboot", "ce_system_reboot"},
    {"ce_system_reset", "ce_system_reset"},
    {"ce_tr069_stop", "ce_sec_tr069_stop"},
    {"ce_tr069_start", "ce_sec_tr069_start"},
    {"ce_tr069_config_changed", "ce_sec_tr069_config_changed"},
    {kova::event::web_service, kova::event::web_service},
    {kova::event::access_filter, kova::event::access_filter},
};
static_assert(std::size(events) == KOVA_EVT_MAX);

} // namespace

int kovaSendTR069CpeEvent(int method, unsigned int event) {
  if (method < 0 || method >= KOVA_CLASS_MAX || event >= KOVA_EVT_MAX) {
    dbg_trace("method=%d>KOVA_CLASS_MAX OR evtname=%d>KOVA_EVT_MAX\n", method, static_cast<int>(event));
    return -1;
  }
  char line[1024];
  std::snprintf(line, sizeof line, "/usr/bin/test_cpeevent %s %s", methods[method],
                gSecondaryInstance == 1 ? events[event].secondary : events[event].name);
  kova::run(line);
  return 0;
}

void kova_trigger_cpe_event(const char *event) {
  constexpr char command[] = "test_cpeevent call \"";
  constexpr std::size_t longest_line = 255, longest_event = longest_line - (sizeof command - 1) - 1;
  if (kova::is_empty(event) || std::strlen(event) > longest_event)
    return; // a shortened line would lack its closing quote

  char escaped[2 * longest_event + 1];
  kova::escape_for_double_quotes(event, escaped);
  char line[sizeof command + sizeof escaped + 1];
  std::snprintf(line, sizeof line, "%s%s\"", command, escaped);
  kova::run(line);
}

void kova_nat_cfg_changed(void) {
  constexpr int vpn_mode = 2;
  kova_trigger_cpe_event(kova::event::nat_changed);
  if (kova_get_oper_mode() != vpn_mode) return;
  kova_trigger_cpe_event("ce_ipv4_nat stop");
  kova::pause_for(3);
  kova_trigger_cpe_event("ce_ipv4_nat start");
}
