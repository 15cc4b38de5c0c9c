// When a session is due that nobody asks for: periodic informs, and those that the ACS has scheduled.
#pragma once

#include "agent/store.hpp"

#include <ctime>
#include <string>

namespace kova::agent {

struct PeriodicInform {
  bool enabled = false;
  long interval = 0;         // seconds
  std::time_t reference = 0; // a time at which one is due; 0: none is given
  bool operator==(const PeriodicInform &) const = default;
};

PeriodicInform periodic_inform(Store &store);
// The first one after this time; 0: there is none. Without a reference they are counted from `begin`.
std::time_t next_periodic(const PeriodicInform &periodic, std::time_t begin, std::time_t after);

// Turns the scheduled informs that are due into events.
void settle_scheduled_informs(Store &store, std::time_t now);

} // namespace kova::agent
