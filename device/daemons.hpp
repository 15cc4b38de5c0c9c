// The device's background programs: for who starts them and for themselves. A program of this installation
// that says "ready", or what went wrong, as the first line of its output (device/background.hpp) takes a row
// here, and can then be started, stopped and seen (device/device.hpp); it ends with the device.
#pragma once

namespace kova::device {

struct Daemon {
  const char *program;  // in libexec
  const char *name;     // of its files: run/NAME.pid, log/NAME.log
  const char *what;     // for a person
  const char *argument; // nullptr: none
};

constexpr Daemon service_daemon{"kova-serviced", "serviced", "the service daemon", nullptr};
// One for each management instance.
constexpr Daemon management_agents[] = {
    {"kova-cwmpd", "cwmpd", "the management agent", nullptr},
    {"kova-cwmpd", "cwmpd-secondary", "the secondary management agent", "--secondary"}};

// All of them; the first runs as long as the device does, the others when they are asked for.
constexpr Daemon daemons[] = {service_daemon, management_agents[0], management_agents[1]};

} // namespace kova::device
