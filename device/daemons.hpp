// The device's background programs: for who starts them and for themselves. A helper program of this installation
// that serves by device/background.hpp takes a row here: each boot starts it, and it can be seen (device/service.hpp).
#pragma once

namespace kova::device {

struct Daemon {
  const char *program;  // in libexec
  const char *name;     // of its files: run/NAME.pid, log/NAME.log
  const char *what;     // for a person
  const char *argument; // that makes the program this daemon; nullptr: none
  const char *setting;  // of the configuration, that is not empty while the daemon is to run; nullptr: always
};

constexpr Daemon service_daemon{"kova-serviced", "serviced", "the service daemon", nullptr, nullptr};
// One for each management instance.
constexpr Daemon management_agents[] = {
    {"kova-cwmpd", "cwmpd", "the management agent", nullptr, "TR_ACS_URL"},
    {"kova-cwmpd", "cwmpd-secondary", "the secondary management agent", "--secondary", "S_TR_ACS_URL"}};

constexpr Daemon daemons[] = {service_daemon, management_agents[0], management_agents[1]};

} // namespace kova::device
