// The device's background programs, seen from outside.
#pragma once

#include "device/daemons.hpp"

#include <sys/types.h>

#include <optional>

namespace kova::device {

std::optional<pid_t> daemon_pid(const Daemon &daemon);
// Returns when it is ready. Throws std::runtime_error when it does not come up.
void start_daemon(const Daemon &daemon);
// Returns when it has ended and its pid file is gone.
void stop_daemon(const Daemon &daemon);

// The service daemon.
std::optional<pid_t> service_pid();
// Returns when the daemon listens. Throws std::runtime_error when it does not come up.
void start_service();
// Returns when no daemon is left, and neither its socket nor its pid file.
void stop_service();

} // namespace kova::device
