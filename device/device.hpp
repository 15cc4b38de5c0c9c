// The virtual device: a directory that holds what the router holds, and a daemon that stands for its services
// and its radio. Whatever goes wrong is a std::runtime_error with a text for a person; nothing waits without
// end.
//
// Layout below host::device_dir():
//   store/   the key/value store and the configuration tree (platform/host)
//   root/    what the device's absolute paths name: root/tmp/mrhd_socket, root/var/config/...,
//   root/usr/bin/... bin/     the PATH of device commands: stand-ins that log what they were asked, and a few
//   harmless host tools log/     device.log, one JSON object a line (device/log.hpp), and of each daemon
//   NAME.log, its messages run/     of each daemon NAME.pid, locked while it runs (device/daemons.hpp); lock
//   (held while the device's state
//            changes), turn (held for a request), serial (the serial number), hardware (what device/redirect
//            tells of the machine), and the marks created, booted (the host boot in which the device was
//            booted), resetting, faults (on demand)
#pragma once

#include "device/daemons.hpp"
#include "device/lock.hpp"

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kova::device {

struct Status {
  std::filesystem::path directory;
  bool created = false;          // factory settings are in the store
  bool booted = false;           // since the host's last boot
  std::optional<pid_t> serviced; // the running service daemon
  bool feed = false;             // the radio moves
  std::string serial;            // "" before the device is created
};

// Throws for a directory that is not a device, or somebody else's.
Status status();

// What a booted device should run and does not.
std::optional<Daemon> missing_daemon();

struct UpOptions {
  std::optional<std::string> serial; // of a device to be created; otherwise one is drawn
  std::filesystem::path like{};      // a device whose links to programs it may share
};

// Creates the device with factory settings when it does not exist, boots it when it is not booted (run-time
// section cleared and seeded, stand-ins laid out, daemon started). Starts again a daemon that has died; with
// KOVA_FEED=off in the environment it sees that the radio stands still. What is up already stays as it is.
void up(const UpOptions &options);
void up();
// As up(), but a booted device whose daemon died is left so: the library must do without it then.
void ensure_booted();
// Stops the daemons; the settings stay. The next boot clears the run-time section.
void down();
void reboot();
// down(), back to factory settings, log emptied, up(). The device stays who it is.
void reset();
// The same; `restore` puts settings back before any daemon but the service daemon starts.
void reset(const std::function<void()> &restore);
// down(), then what the device laid out goes, and the directory with it when nothing else is in it.
void remove();

// Starts the management agents that have a server and do not run, on a device that is booted, as each boot
// does. Throws for one that does not come up.
void start_agents();

// Requests of several tools come one after the other, as those of one agent do: a reading sees one state,
// whole. Readings wait for changes only. A device that may only be read is not waited for.
class Turn {
public:
  enum class Kind { reading, changing };
  // Throws when it does not come in that time; for a change also when the daemon hangs, which would not hear
  // of it.
  explicit Turn(Kind kind = Kind::changing, std::chrono::seconds patience = std::chrono::seconds(30));

private:
  std::optional<Lock> lock_;
};

} // namespace kova::device
