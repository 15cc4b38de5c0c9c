#include "device/diag/results.hpp"

#include "device/date_time.hpp"
#include "device/diag/failure.hpp"
#include "platform/host/nvram_admin.hpp"
#include "platform/nvram.h"

#include <array>
#include <chrono>
#include <string_view>
#include <thread>

namespace kova::diag {
namespace {

using namespace std::chrono_literals;

bool reads_requested(const std::string &key) {
  std::array<char, 32> text{};
  return nvram_bufget_string(host::runtime_section, key.c_str(), text.data(), text.size()) == 1 &&
         std::string_view(text.data()) == state::requested;
}

} // namespace

std::string time_text(const timespec &time) {
  return time.tv_sec == 0 ? unknown_time : device::date_time(time, device::Fraction::microseconds);
}

// The agent sends the launch before it stores "Requested", which would replace the state of a test that was
// faster. An aborted test leaves "Requested" behind: what stands there from the beginning counts after a
// while only.
void ResultKeys::await_request() const {
  const auto begin = std::chrono::steady_clock::now();
  bool stood_there = true;
  for (auto waited = 0ns; waited < 2s; waited = std::chrono::steady_clock::now() - begin) {
    if (!reads_requested(prefix_ + "STATE"))
      stood_there = false;
    else if (!stood_there || waited >= 300ms)
      return;
    std::this_thread::sleep_for(10ms);
  }
}

void ResultKeys::store(const Results &results, const std::string &state) const {
  std::vector<host::NvramEntry> entries;
  for (const auto &[key, value] : results)
    entries.push_back(key == route_hosts ? host::NvramEntry{host::configuration_section, key, value}
                                         : host::NvramEntry{host::runtime_section, prefix_ + key, value});
  entries.push_back({host::runtime_section, prefix_ + "STATE", state});
  host::nvram_store(entries);
}

} // namespace kova::diag
