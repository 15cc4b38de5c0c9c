// The agent of one management instance: it knows when a session is due, and has its tasks carry out what
// takes long.
#pragma once

#include "agent/tls_files.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace kova::agent {

struct AgentOptions {
  std::optional<std::uint16_t> port; // of connection requests; otherwise that of the last time, or a free one
  std::string trace;                 // file; "" for none
  TlsFiles tls;
  // Seconds: what the session's task takes when nothing is said.
  std::optional<unsigned> least_retry_wait, exchange_seconds;
};

// Until it is asked to end, or the device has no management server any more. Throws std::runtime_error.
void run_agent(const AgentOptions &options);

} // namespace kova::agent
