// What is compared: a call of the library, and the platform calls that it cannot do without, written out by hand.
#pragma once

#include <span>

namespace bench {

struct Case {
  const char *name;
  void (*library)();
  void (*direct)();
  double aim; // at most this many times the direct calls
};

std::span<const Case> cases();

// Fills the stores of the device that KOVA_DEVICE names.
void prepare();

} // namespace bench
