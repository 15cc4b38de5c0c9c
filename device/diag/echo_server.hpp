// The UDP echo server.
#pragma once

#include "device/diag/options.hpp"

namespace kova::diag {

// Returns when the process is asked to end. Throws Failure when it cannot listen.
void serve_echo(const Options &options);

} // namespace kova::diag
