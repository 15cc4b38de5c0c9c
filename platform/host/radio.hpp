// What the modem of a router sees that stands still in a cell with some traffic: values that move slowly and
// hang together. They are a function of the device and of its up time, so nothing has to run for them.
#pragma once

#include "platform/host/nvram_admin.hpp"
#include "platform/host/store.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kova::host {

// One line of the rate sampler's file: a second of the first PDN.
struct RateSample {
  unsigned long time;                            // seconds of system up time
  unsigned long long received_bytes, sent_bytes; // since the boot
  unsigned long receive_rate, send_rate;         // bytes in this second
};

class Radio {
public:
  Radio(std::uint64_t seed, unsigned long second) : seed_(seed), second_(second) {}
  // The LTE daemon's run-time keys that move.
  std::vector<NvramEntry> readings() const;
  // The last seconds, newest first.
  std::vector<RateSample> samples() const;

private:
  enum Course { power_course, imbalance_course, interference_course, downlink_course, uplink_course };
  double wander(Course course) const;
  unsigned long long bytes(Course course, double rate) const;
  RateSample sample() const;
  double antenna_power(int antenna) const;   // RSRP in dBm
  double antenna_quality(int antenna) const; // CINR in dB
  int channel_quality(int antenna) const;    // CQI
  int downlink_scheme() const;               // MCS
  int uplink_scheme() const;

  std::uint64_t seed_;
  unsigned long second_;
};

// The readings of now, of a device whose radio is on; a value that is stored holds in place of them.
std::vector<NvramEntry> radio_readings(const Transaction &snapshot);
std::optional<std::string> radio_reading(const Transaction &snapshot, int section, std::string_view key);

// A setting as its readers see it: what is stored, or the radio's reading. Hands it to `use` while it is valid.
template <class Use>
int use_setting(const Transaction &snapshot, int section, std::string_view key, Use use) {
  std::string_view value;
  const int answer = snapshot.get(StoredKey::setting(section, key), value);
  if (answer == 0) {
    use(value);
  } else if (answer == MDB_NOTFOUND) {
    const auto reading = radio_reading(snapshot, section, key);
    if (!reading) return answer;
    use(*reading);
    return 0;
  }
  return answer;
}

} // namespace kova::host
