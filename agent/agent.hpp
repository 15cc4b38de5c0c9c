// The agent of one management instance: it knows when a session is due, and has its tasks carry out what
// takes long.
#pragma once

#include "agent/options.hpp"

namespace kova::agent {

// Until it is asked to end, or the device has no management server any more. Throws std::runtime_error.
void run_agent(const Options &options);

} // namespace kova::agent
