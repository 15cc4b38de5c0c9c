// One session with the ACS.
#pragma once

#include "agent/http.hpp"
#include "agent/options.hpp"
#include "agent/status.hpp"
#include "agent/store.hpp"
#include "agent/trace.hpp"

namespace kova::agent {

// The ACS as the device's parameters name it.
Server management_server(Store &store, const TlsFiles &tls);

// Reports what is pending and serves the ACS. How it went is noted in the store and in the device's log.
// False when it failed.
bool run_session(Store &store, const Options &options, Trace &trace);

} // namespace kova::agent
