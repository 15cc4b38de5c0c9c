// The device log: what the device was asked to do, by whom and when. One JSON object a line, appended with a
// single write so that lines of several processes never mix. Every record has
//   "time"  UTC, "2026-11-21T03:16:16.123Z"
//   "kind"  "service" | "event" | "command" | "syslog" | "device"
//   "pid"   the asking process; that of a diagnostics test where it says something itself
//   "asker" the process whose request the test belongs to, where that is not "pid"
// and by kind
//   service  "request" (name without prefix: "restart_dhcp_server", or "unknown"), "command" ("0x10000006"),
//   "payload";
//            "word" and "destination" where they are not the usual 0 and 1. What was no record has the
//            request "malformed", empty command and payload, and a "reason"
//   event    "method" ("notify", "call", "is_busy"), "event" (the text)
//   command  "program", "args" (array); "process" where it is a diagnostics test that was started
//   syslog   "priority" ("5"), "tag" (who says it: "easycwmpd"), "text"
//   device   "what", in words: "created", "booted", "stopped", "daemon restarted", "clock synchronised" (with
//            the "server"); for the tests "ping_diag ended with
//            status 1", "ping_diag stopped", "ping_diag: Error_Other: ...", "refused launch_pingDiag: ..."
//            The end of a test also has "program" and "status", or "signal" where one ended it
// Bytes that are no UTF-8 show as U+FFFD.
//
// A log that has grown beyond 4 MiB is renamed to device.log.1, in place of the one before, and a new one
// begun.
#pragma once

#include "device/fd.hpp"

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <variant>
#include <vector>

namespace kova::device {

std::filesystem::path log_file();
// The records ahead of those in log_file(); may be missing.
std::filesystem::path earlier_log_file();

struct LogField {
  const char *name;
  std::variant<std::string, std::int64_t, std::vector<std::string>> value;
};
// Of one record, but for its time; the last of two of one name holds.
using LogFields = std::vector<LogField>;

// Adds "time" and, where the environment tells it (asking_process), "asker", and writes the line. Failures go
// to standard error: a device must not stop for its log.
void log_record(const LogFields &fields);

// KOVA_ASKING_PID, the process whose request this one was started for; 0 when there is none.
pid_t asking_process();

// To append to, beginning anew as the device log does.
Fd open_log(const std::filesystem::path &path);

} // namespace kova::device
