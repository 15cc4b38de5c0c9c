// The agent as other programs see it: whether it runs, how its sessions go, and how to ask for one.
#pragma once

#include "agent/status.hpp"
#include "device/daemons.hpp"

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace kova::agent {

// In the environment of an agent that starts: the seconds before its first session.
constexpr const char *first_inform_delay = "KOVA_FIRST_INFORM_DELAY";

// The agent of this process's management instance.
const device::Daemon &own_daemon();

struct AgentStatus {
  std::optional<pid_t> process; // of a running agent
  bool informed = false;        // the ACS knows of the device's last boot
  SessionStatus last_session;
  Retries retries;
  std::time_t next_periodic = 0; // 0: none is due
  std::string connection_request_url;
};

AgentStatus agent_status();
// Whatever wait there is after a failure. Throws std::runtime_error when no agent runs, or for an event that
// is none. Answers the number of the last session before.
unsigned long ask_for_session(std::string_view event);
// The end of a session that began after the one with this number; none within the time.
std::optional<SessionStatus> await_session(unsigned long number_before, std::chrono::seconds patience);

} // namespace kova::agent
