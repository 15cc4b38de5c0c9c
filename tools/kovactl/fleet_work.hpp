// Work on all devices of a fleet, several at a time.
#pragma once

#include "kovactl/fleet.hpp"
#include "kovactl/output.hpp"

#include <functional>
#include <string>
#include <vector>

namespace kova::ctl {

struct DeviceResult {
  std::string serial;
  int status = Success;
  std::string out, messages; // what it has written
  bool well() const { return status == Success; }
  // With --json: what it has written, as text where that is no JSON value.
  Json answer() const;
};

// Done by a process of its own, on the selected device. What it throws is a failure.
using DeviceWork = std::function<ExitStatus(const std::string &serial, const Output &output)>;

struct WorkDone {
  std::vector<DeviceResult> results; // in the order of the serial numbers
  bool interrupted = false;          // results has only what was begun
};

// With a bar on a terminal. SIGINT or SIGTERM lets what is begun come to its end, a second one breaks it off.
WorkDone on_each_device(const Fleet &fleet, const std::vector<std::string> &serials, const Output &output,
                        const DeviceWork &work);

// Says what went wrong, and answers the status of the whole.
ExitStatus report_failures(const Output &output, const WorkDone &done);

} // namespace kova::ctl
