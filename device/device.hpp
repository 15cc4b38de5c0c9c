// The virtual device: a directory that holds what the router holds, a service daemon that stands for its services, and a
// feed that stands for its radio.
//
// Layout below host::device_dir():
//   store/   the key/value store and the configuration tree (platform/host)
//   root/    what the device's absolute paths name: root/tmp/mrhd_socket, root/var/config/..., root/usr/bin/...
//   bin/     the PATH of device commands: stand-ins that log what they were asked, and a few harmless host tools
//   log/     device.log, one JSON object a line (device/log.hpp)
//            and serviced.log, radiod.log, the messages of the daemon and of the feed
//   run/     serviced.pid, radiod.pid (each locked by the running program), lock (held while the device's state
//            changes), turn (held for a request), and the marks created, booted (the host boot in which the device was booted) and resetting
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>

namespace kova::device {

struct Status {
  std::filesystem::path directory;
  bool created = false;          // factory settings are in the store
  bool booted = false;           // since the host's last boot
  std::optional<pid_t> serviced; // the running service daemon
  std::optional<pid_t> radiod;   // the running radio feed
};

Status status();

// Creates the device with factory settings when it does not exist, boots it when it is not booted (run-time section
// cleared and seeded, stand-ins laid out, daemon and feed started). Starts again which of them has died; with
// KOVA_FEED=off in the environment it sees that no feed runs instead. What is up already stays as it is. Throws std::runtime_error with a text for a person.
void up();
// As up(), but a booted device whose daemon died is left so: the library must do without it then.
void ensure_booted();
// Stops the daemon and the feed; the settings stay. The next boot clears the run-time section.
void down();
// down(), back to factory settings, log emptied, up().
void reset();

// Requests of several tools come one after the other, as those of one agent do. A device that may only be read is not
// waited for.
class Turn {
public:
  Turn();
  ~Turn();
  Turn(const Turn &) = delete;
  Turn &operator=(const Turn &) = delete;

private:
  int file_;
};

std::filesystem::path log_file();

} // namespace kova::device
