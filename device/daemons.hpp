// The device's background programs by name: for who starts them and for themselves.
#pragma once

namespace kova::device {

struct Daemon {
  const char *program, *pid_file, *messages; // the files below run/ and log/
  const char *what;                          // for a person
};

constexpr Daemon service_daemon{"kova-serviced", "serviced.pid", "serviced.log", "the service daemon"};
constexpr Daemon radio_feed{"kova-radiod", "radiod.pid", "radiod.log", "the radio feed"};

} // namespace kova::device
