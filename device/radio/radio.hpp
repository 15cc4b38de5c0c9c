// What the modem of a router sees that stands still in a cell with some traffic: values that move slowly and
// hang together.
#pragma once

#include "device/radio/rate_file.hpp"
#include "platform/host/nvram_admin.hpp"

#include <random>
#include <vector>

namespace kova::device {

// Wanders about a mean, within bounds.
struct Walk {
  double value, mean, step, low, high;
  void move(std::mt19937 &chance);
};

class Radio {
public:
  // Starts from the same state whatever the seed.
  explicit Radio(unsigned seed = 0) : chance_(seed) {}
  void pass_second();
  // The LTE daemon's run-time keys that move.
  std::vector<host::NvramEntry> readings() const;
  // Bytes in a second.
  unsigned long receive_rate() const;
  unsigned long send_rate() const;

private:
  double antenna_power(int antenna) const;   // RSRP in dBm
  double antenna_quality(int antenna) const; // CINR in dB
  int channel_quality(int antenna) const;    // CQI
  int downlink_scheme() const;               // MCS
  int uplink_scheme() const;

  std::mt19937 chance_;
  Walk power_{-92, -92, 0.7, -115, -75}; // dBm at antenna 0
  Walk imbalance_{-2, -2, 0.3, -6, 2};   // dB, of antenna 1 against antenna 0
  Walk interference_{0, 0, 0.5, -4, 8};  // dB
  Walk downlink_load_{0.12, 0.12, 0.008, 0.005, 0.9}, uplink_load_{0.05, 0.05, 0.003, 0.002, 0.9};
};

} // namespace kova::device
