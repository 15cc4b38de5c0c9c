// How requests and the model itself are shown.
#pragma once

#include "kovactl/diagnostics_tests.hpp"
#include "kovactl/output.hpp"
#include "kovactl/request.hpp"

#include <optional>
#include <span>
#include <vector>

namespace kova::ctl {

ExitStatus report(const Output &output, const Reading &reading);
// For a person: what went wrong, if anything. The status tells whether it did.
ExitStatus complain(const Output &output, std::span<const Fault> faults);

// What came of a request, beside the values that were stored.
struct Aftermath {
  std::vector<DiagnosticsTest> tests;   // that were waited for
  std::optional<std::vector<Json>> log; // what the device was asked to do, when that is to be shown
};
ExitStatus report(const Output &output, const Setting &setting, const Aftermath &aftermath);

ExitStatus report(const Output &output, const RowChange &change, const std::optional<std::vector<Json>> &log);

void report(const Output &output, std::span<const Listed> catalogue);

} // namespace kova::ctl
