// The device log: what the device was asked to do, by whom and when. One JSON object a line, appended with a single
// write so that lines of several processes never mix. Every record has
//   "time"  UTC, "2026-11-21T03:16:16.123Z"
//   "kind"  "service" | "event" | "command" | "syslog" | "device"
//   "pid"   the asking process
// and by kind
//   service  "request" (name without prefix: "restart_dhcp_server", or "unknown"), "command" ("0x10000006"), "payload";
//            "word" and "destination" where they are not the usual 0 and 1. What was no record has the request
//            "malformed", empty command and payload, and a "reason"
//   event    "method" ("notify", "call", "is_busy"), "event" (the text)
//   command  "program", "args" (array); "process" where it is a diagnostics test that was started
//   syslog   "priority" ("5"), "tag" (who says it: "easycwmpd"), "text"
//   device   "what", in words: "created", "booted", "stopped", "daemon restarted", "clock synchronised" (with
//            the "server"); for the tests "ping_diag ended with
//            status 1", "ping_diag stopped", "ping_diag: Error_Other: ...", "refused launch_pingDiag: ..."
//            The end of a test also has "program" and "status", or "signal" where one ended it
// Bytes that are no UTF-8 stand in a text as "\\xff".
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace kova::device {

// Adds "time" and writes the line. Failures go to standard error: a device must not stop for its log.
void log_record(nlohmann::json record);

} // namespace kova::device
