// The diagnostics tests that a request asked the device to run, and their ends.
#pragma once

#include "kovactl/output.hpp"
#include "kovactl/request.hpp"

#include <chrono>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace kova::ctl {

struct DiagnosticsTest {
  std::string object; // its path, with the "."
  std::string state;
  std::chrono::milliseconds duration{}; // as far as it was waited for
  std::string failure;                  // "" when the test came to its end and found something
  std::uintmax_t earlier_messages = 0;  // bytes of the daemon's messages before the test

  std::string name() const;
};

std::vector<DiagnosticsTest> tests_asked_for(std::span<const Assignment> request);

// Returns when every test has ended, or cannot end any more, or the time is out.
void await_tests(std::span<DiagnosticsTest> tests, std::chrono::seconds patience, const Output &output);

} // namespace kova::ctl
