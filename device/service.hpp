// The device's background programs, seen from outside.
#pragma once

#include "device/daemons.hpp"
#include "device/lock.hpp"

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kova::device {

std::optional<pid_t> daemon_pid(const Daemon &daemon);
// Returns when it is ready. Until then it holds the device's lock too: should this process be killed, nobody
// meets a daemon that is on its way. Throws std::runtime_error when it does not come up.
void start_daemon(const Daemon &daemon, const std::vector<std::string> &arguments, const Lock &device_lock);
// Returns when it has ended and its pid file is gone.
void stop_daemon(const Daemon &daemon);

// What the service daemon confirms a request with; nothing when no daemon listens. Throws std::runtime_error
// when one does not answer in that time.
std::optional<uint32_t> ask_service(uint32_t command, const std::string &payload,
                                    std::chrono::seconds patience);

} // namespace kova::device
