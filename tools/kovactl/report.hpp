// How requests and the model itself are shown.
#pragma once

#include "kovactl/diagnostics_tests.hpp"
#include "kovactl/output.hpp"
#include "kovactl/request.hpp"

#include <optional>
#include <span>
#include <vector>

namespace kova::ctl {

// As for get: whole paths, tails and wildcards.
Reading read(std::span<const std::string> words);
Reading read_back(std::span<const Assignment> assignments);

ExitStatus report(const Output &output, const Reading &reading, bool values_only = false);
// For a person: what went wrong, if anything. The status tells whether it did.
ExitStatus complain(const Output &output, std::span<const Fault> faults);

// What came of a request.
struct Aftermath {
  Reading now;                          // what was stored, as the device reads it
  std::vector<DiagnosticsTest> tests;   // that were waited for
  std::optional<std::vector<Json>> log; // what the device was asked to do, when that is to be shown
};
// What was stored, and the objects of the tests.
Reading outcome(const Setting &setting, std::span<const DiagnosticsTest> tests);
ExitStatus report(const Output &output, const Setting &setting, const Aftermath &aftermath);
// Of a request that was only tried.
ExitStatus report_trial(const Output &output, const Setting &setting);

ExitStatus report(const Output &output, const RowChange &change, const std::optional<std::vector<Json>> &log);

void report(const Output &output, std::span<const Listed> catalogue);

} // namespace kova::ctl
