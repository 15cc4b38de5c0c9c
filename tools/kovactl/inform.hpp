// The management agent, for the commands that show and start it.
#pragma once

#include "kovactl/output.hpp"
#include "request/request.hpp"

#include <span>
#include <string>

namespace kova::ctl {

// Stores the URL of the management server as a request of it would, and starts the agent. Throws with the
// reason of a refusal.
void start_management_agent(const Output &output, const std::string &url);
// Empties the URL, which no request may do: the agent ends.
void stop_management_agent();
// Starts the agent when the URL of its server is among what was stored.
void follow_management_url(std::span<const request::Assignment> stored);
// How it is; no rows for a device that never had one.
Table agent_rows();
Json agent_json();

} // namespace kova::ctl
