// The ping test.
#pragma once

#include "device/diag/options.hpp"
#include "device/diag/results.hpp"

#include <string_view>
#include <vector>

namespace kova::diag {

// What the lines of the host's ping tell. Each answer has its line; the summary, whose form differs more, is
// not read.
class PingAnswers {
public:
  explicit PingAnswers(double longest_ms) : longest_ms_(longest_ms) {}
  void take_line(std::string_view line);
  Results results(unsigned long sent) const;

private:
  double longest_ms_;
  std::vector<double> times_; // of the answers in time
};

Results ping(const Options &options);

} // namespace kova::diag
