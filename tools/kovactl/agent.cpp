#include "kovactl/agent.hpp"

#include <kova/frame.h>

namespace kova::ctl {

void boot(const Output &output) {
  const bool existed = device::status().created;
  device::ensure_booted();
  if (!existed) output.note("created a virtual device in " + device::status().directory.string());
}

void start_agent(const Output &output) {
  boot(output);
  in_turn([] { return init_parameters(); }, only_reading); // what it puts right, it puts right at any time
}

} // namespace kova::ctl
