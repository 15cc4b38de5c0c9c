// What the agent keeps of its sessions: how the last one went, and when a failed one is tried again.
#pragma once

#include "agent/store.hpp"

#include <chrono>
#include <ctime>
#include <string>
#include <string_view>
#include <vector>

namespace kova::agent {

struct SessionStatus {
  unsigned long number = 0; // of all sessions; 0: there was none yet
  bool running = false;
  std::time_t begin = 0, end = 0;
  std::vector<std::string> events;
  std::string failure;                  // "" when it went well
  std::chrono::milliseconds duration{}; // of the last one that ended
  std::vector<std::time_t> recent{};    // when those of the minute before it began, and it itself

  // The next one, which begins now.
  SessionStatus follow(std::vector<std::string> its_events) const;
  unsigned in_minute_before(std::time_t time) const;
};

SessionStatus last_session(const Transaction &store);
void put(Transaction &change, const SessionStatus &session);

struct Retries {
  unsigned count = 0;       // of sessions that failed one after the other
  std::time_t earliest = 0; // of the next attempt
};

Retries retries(const Transaction &store);
void clear_retries(Transaction &change);
// One more failure. The wait is the standard's: it doubles from a random time of `least_wait` to twice that,
// up to the tenth, and is no shorter than what the ACS has asked for.
void add_retry(Transaction &change, unsigned least_wait, long asked_for);

} // namespace kova::agent
