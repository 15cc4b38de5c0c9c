// The device's background programs: for who starts them and for themselves. A helper program of this installation
// that serves by device/background.hpp takes a row here, and can then be started, stopped and seen
// (device/device.hpp, device/service.hpp).
#pragma once

namespace kova::device {

struct Daemon {
  const char *program;  // in libexec
  const char *name;     // of its files: run/NAME.pid, log/NAME.log
  const char *what;     // for a person
  const char *argument; // that makes the program this daemon; nullptr: none
};

constexpr Daemon service_daemon{"kova-serviced", "serviced", "the service daemon", nullptr};
// One for each management instance.
constexpr Daemon management_agents[] = {
    {"kova-cwmpd", "cwmpd", "the management agent", nullptr},
    {"kova-cwmpd", "cwmpd-secondary", "the secondary management agent", "--secondary"}};

// The first runs as long as the device is up. The others do from their start on, over boots, until they are stopped.
constexpr Daemon daemons[] = {service_daemon, management_agents[0], management_agents[1]};

} // namespace kova::device
