#include "agent/boot.hpp"

#include "agent/attributes.hpp"
#include "agent/events.hpp"
#include "agent/names.hpp"
#include "agent/status.hpp"
#include "agent/transfers.hpp"
#include "platform/host/nvram_admin.hpp"

#include <kova/frame.h>

#include <algorithm>

namespace kova::agent {

void note_bootstrap(Store &store) {
  const std::string url = read_value(store, parameter::url);
  const bool is_known = store.read([&url](const Transaction &reading) {
    const auto events = pending_events(reading);
    return reading.get(stored::bootstrapped_url) == url ||
           std::ranges::find(events, event::bootstrap, &Event::code) != events.end();
  });
  if (is_known || url.empty()) return;
  store.change([](Transaction &change) {
    add_event(change, event::bootstrap);
    clear_retries(change);
  });
}

void note_boot(Store &store) {
  // A boot of the device clears this section of its store.
  const std::string mark = gSecondaryInstance != 0 ? "S_CWMP_BOOTED" : "CWMP_BOOTED";
  if (host::nvram_find(host::runtime_section, mark)) return;
  install_firmware(store);
  store.change([](Transaction &change) {
    add_event(change, event::boot);
    for (const auto &[record, key] : change.entries(stored::reboot)) {
      add_event(change, event::m_reboot, key);
      change.erase(record);
    }
    change.erase(stored::installation);
    change.erase_all(stored::diagnostics); // a test does not outlive the device's programs
    clear_retries(change);
  });
  const host::NvramEntry entry{host::runtime_section, mark, "1"};
  host::nvram_store(std::span(&entry, 1));
}

const char *asked_to_leave(Store &store) {
  return store.read([](const Transaction &reading) -> const char * {
    if (reading.get(stored::factory_reset)) return "factory-reset";
    return !reading.entries(stored::reboot).empty() || reading.get(stored::installation) ? "reboot" : nullptr;
  });
}

} // namespace kova::agent
