// What a test leaves in the store: in the run-time section, under the keys of its instance.
#pragma once

#include <ctime>
#include <string>
#include <utility>
#include <vector>

namespace kova::diag {

// End of the key ("SUC_CNT") and value.
using Results = std::vector<std::pair<std::string, std::string>>;
// The one that is a whole key, a setting that both instances share: the hosts of the hops, joined by ";".
constexpr const char *route_hosts = "ROUTEHOPS_HOPHOST";

// For a time that never was.
constexpr const char *unknown_time = "0001-01-01T00:00:00Z";
std::string time_text(const timespec &time); // with microseconds; of none, the unknown time

class ResultKeys {
public:
  // test: "PINGDIAG"
  ResultKeys(bool secondary, const std::string &test) : prefix_((secondary ? "S_TR_" : "TR_") + test + "_") {}

  // Returns when the test may begin.
  void await_request() const;
  // All at once: who sees the new state sees the results that belong to it. Throws std::runtime_error.
  void store(const Results &results, const std::string &state) const;

private:
  std::string prefix_;
};

} // namespace kova::diag
