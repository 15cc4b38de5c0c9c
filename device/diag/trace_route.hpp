// The traceroute test.
#pragma once

#include "device/diag/options.hpp"
#include "device/diag/results.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace kova::diag {

// What the lines of the host's traceroute tell; of the hops, the last one counts.
class Route {
public:
  explicit Route(std::string target) : target_(std::move(target)) {}
  void take_line(std::string_view line);
  // Throws Failure when the host was not reached.
  Results results() const;
  // A hop a line, as they came.
  const std::string &hops() const { return hops_; }

private:
  std::string target_, hops_;
  std::vector<std::string> hosts_; // of each hop the first that answered
  unsigned long length_ = 0;
  bool reached_ = false;
  std::string refusal_; // "!H": what a hop said instead of passing the packet on
  double total_ms_ = 0;
  int answers_ = 0;
};

Results trace_route(const Options &options);

} // namespace kova::diag
