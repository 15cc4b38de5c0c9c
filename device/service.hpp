// The running service daemon, seen from outside.
#pragma once

#include <sys/types.h>

#include <optional>

namespace kova::device {

std::optional<pid_t> service_pid();
// Returns when the daemon listens. Throws std::runtime_error when it does not come up.
void start_service();
// Returns when no daemon is left, and neither its socket nor its pid file.
void stop_service();

} // namespace kova::device
