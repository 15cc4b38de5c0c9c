// Faults on demand, for who tests a management server: what the device does wrong until it is told otherwise, or
// boots.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kova::device {

struct Faults {
  int delay = 0;                         // seconds that it takes for each message of a session
  int break_after = 0, reboot_after = 0; // so many messages of a session; 0: not at all
  std::vector<std::string> failing; // parameters, and branches ("...."), that answer with an internal error
  bool deaf = false;                // no answer to connection requests

  bool any() const;
  bool fails(std::string_view path) const;
};

// None when there is no device.
Faults faults();
// In place of those before. Throws std::runtime_error.
void set_faults(const Faults &faults);
// Each in words, "9002 for InternetGatewayDevice.Time.".
std::vector<std::string> described(const Faults &faults);

} // namespace kova::device
