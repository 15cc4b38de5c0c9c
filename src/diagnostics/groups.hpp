// The groups of the diagnostics tests, each of which starts or stops its test.
#pragma once

#include "src/transaction/group.hpp"

namespace kova::diagnostics {

extern const transaction::Group download, upload, udp_echo, ping, trace_route;

} // namespace kova::diagnostics
