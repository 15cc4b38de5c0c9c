// What the agent's start, a boot and a new ACS mean for it.
#pragma once

#include "agent/store.hpp"

namespace kova::agent {

// The event of a first contact, when the ACS is not the one that has acknowledged it.
void note_bootstrap(Store &store);
// The events of a boot, once for each boot of the device, and what was to be reported after it.
void note_boot(Store &store);
// The task that the device waits for, "reboot" or "factory-reset"; nullptr: none.
const char *asked_to_leave(Store &store);

} // namespace kova::agent
