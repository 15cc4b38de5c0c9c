#include "platform/host/radio.hpp"

#include "platform/host/radio_admin.hpp"
#include "platform/nvram.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <stdexcept>

namespace kova::host {
namespace {

constexpr int cell = 12;                                            // PCI
constexpr double downlink_peak = 150e6 / 8, uplink_peak = 50e6 / 8; // bytes in a second, over 20 MHz
constexpr double downlink_mean = 0.06 * downlink_peak, uplink_mean = 0.025 * uplink_peak;
constexpr int best_downlink_scheme = 28, best_uplink_scheme = 24;

int rounded(double value) {
  return static_cast<int>(std::lround(value));
}

std::string decimal(double value, int places) {
  char text[32];
  std::snprintf(text, sizeof text, "%.*f", places, value);
  return text;
}

std::string pair(int one, int other) {
  return std::to_string(one) + "/" + std::to_string(other);
}

// The daemon counts kilobits of 1024.
std::string kilobits(unsigned long bytes) {
  return decimal(static_cast<double>(bytes) * 8 / 1024, 4);
}

// From 0 up to 1, the same for the same numbers.
double chance(std::uint64_t seed, std::uint64_t course, std::uint64_t period, std::uint64_t at) {
  std::uint64_t mixed = seed;
  for (const std::uint64_t part : {course, period, at}) {
    mixed = (mixed ^ part) + 0x9E3779B97F4A7C15;
    mixed = (mixed ^ mixed >> 30) * 0xBF58476D1CE4E5B9;
    mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EB;
    mixed ^= mixed >> 31;
  }
  return std::ldexp(static_cast<double>(mixed >> 11), -53);
}

} // namespace

// From -1 to 1: chance at the ends of periods of several lengths, and a smooth way from one to the next.
double Radio::wander(Course course) const {
  constexpr struct {
    unsigned long period;
    double part;
  } waves[] = {{7, 0.2}, {31, 0.3}, {127, 0.5}};
  double value = 0;
  for (const auto &[period, part] : waves) {
    const unsigned long begin = second_ / period;
    const double from = chance(seed_, course, period, begin), to = chance(seed_, course, period, begin + 1);
    const double way = static_cast<double>(second_ % period) / static_cast<double>(period);
    value += part * (2 * (from + (to - from) * way * way * (3 - 2 * way)) - 1);
  }
  return value;
}

// A sum that never falls, so that a second's rate is the difference of two: a mean rate over a time that runs
// now faster, now slower, by chance within five seconds and from each five to the next, and evenly over ten
// minutes.
unsigned long long Radio::bytes(Course course, double rate) const {
  constexpr unsigned long period = 5;
  constexpr double swing = 600 / (2 * std::numbers::pi);
  const unsigned long begin = second_ / period, passed = second_ % period;
  const auto edge = [&](unsigned long at) {
    return static_cast<double>(at) + 0.5 * chance(seed_, course, period, at);
  };
  const double within = passed == 0 ? 0 : 0.4 * chance(seed_, course, 1, second_);
  const double way = (static_cast<double>(passed) + within) / static_cast<double>(period);
  const double time = (edge(begin) + (edge(begin + 1) - edge(begin)) * way) * period;
  return static_cast<unsigned long long>(rate * (time + 0.6 * swing * (1 - std::cos(time / swing))));
}

RateSample Radio::sample() const {
  const Radio before(seed_, second_ == 0 ? 0 : second_ - 1);
  const unsigned long long received = bytes(downlink_course, downlink_mean),
                           sent = bytes(uplink_course, uplink_mean);
  return {second_, received, sent,
          static_cast<unsigned long>(received - before.bytes(downlink_course, downlink_mean)),
          static_cast<unsigned long>(sent - before.bytes(uplink_course, uplink_mean))};
}

std::vector<RateSample> Radio::samples() const {
  constexpr unsigned long kept = 10;
  std::vector<RateSample> samples;
  for (unsigned long ago = 0; ago < kept && ago <= second_; ago++)
    samples.push_back(Radio(seed_, second_ - ago).sample());
  return samples;
}

double Radio::antenna_power(int antenna) const {
  const double power = -92 + 9 * wander(power_course);
  return antenna == 0 ? power : power - 2 + 3 * wander(imbalance_course);
}

double Radio::antenna_quality(int antenna) const {
  constexpr double noise = -108; // dBm, with the neighbours' share
  return std::clamp(antenna_power(antenna) - noise - 5 * wander(interference_course), -5.0, 30.0);
}

int Radio::channel_quality(int antenna) const {
  return std::clamp(rounded(4 + 0.52 * antenna_quality(antenna)), 1, 15);
}

int Radio::downlink_scheme() const {
  return std::clamp(channel_quality(0) + channel_quality(1) - 2, 0, best_downlink_scheme);
}

int Radio::uplink_scheme() const {
  return std::clamp(downlink_scheme() - 3, 0, best_uplink_scheme);
}

std::vector<NvramEntry> Radio::readings() const {
  const int power = rounded(std::max(antenna_power(0), antenna_power(1))); // RSRP
  const RateSample traffic = sample();
  const double load = static_cast<double>(traffic.receive_rate) / downlink_peak;
  const double best_quality = std::max(antenna_quality(0), antenna_quality(1));
  const int quality = std::clamp(rounded(-6 - 5 * load - (25 - best_quality) / 5), -20, -3); // RSRQ
  const int strength = 20 + power - quality; // RSSI, over 100 resource blocks
  const double sent_power = std::clamp(23 - 0.8 * (power + 105), -10.0, 23.0); // the farther, the louder
  const std::string record = std::to_string(cell) + "," + std::to_string(strength) + "," +
                             std::to_string(power) + "," + std::to_string(quality) + "," +
                             std::to_string(rounded(best_quality)) + "," + decimal(sent_power, 1);
  const double errors =
      std::clamp(2 - best_quality / 20 + 1.25 * wander(interference_course), 0.0, 10.0); // percent
  std::vector<NvramEntry> entries;
  const auto add = [&entries](const char *key, std::string value) {
    entries.push_back({runtime_section, key, std::move(value)});
  };
  add("DM_CELL_STAT_INFO", record);
  add("lte_rsrp_per_antenna", pair(rounded(antenna_power(0)), rounded(antenna_power(1))));
  add("lte_cinr_per_antenna", pair(rounded(antenna_quality(0)), rounded(antenna_quality(1))));
  add("lte_cqi0", std::to_string(channel_quality(0)));
  add("lte_cqi1", std::to_string(channel_quality(1)));
  add("lte_dl_mcs", std::to_string(downlink_scheme()));
  add("lte_ul_mcs", std::to_string(uplink_scheme()));
  add("lte_bler_stat", decimal(errors, 2));
  add("lte_cur_dlcw1", kilobits(traffic.receive_rate));
  add("lte_cur_ulsched", kilobits(traffic.send_rate));
  return entries;
}

namespace {

// Stored by a boot, while the radio is on: its seed.
const StoredKey seed_key = StoredKey::setting(runtime_section, "host_radio");

// The radio of now, when it is on.
std::optional<Radio> radio_of(const Transaction &snapshot) {
  std::string_view seed;
  if (snapshot.get(seed_key, seed) != 0) return {};
  std::uint64_t number = 0;
  std::from_chars(seed.data(), seed.data() + seed.size(), number);
  return Radio(number, static_cast<unsigned long>(tarn_get_uptime()));
}

std::string line_of(const RateSample &sample) {
  constexpr unsigned long long received_packet = 1200, sent_packet = 500; // bytes on average
  char text[160];
  std::snprintf(text, sizeof text, "%lu: %lu %llu %llu %lu %llu %llu\n", sample.time, sample.receive_rate,
                sample.received_bytes / received_packet, sample.received_bytes, sample.send_rate,
                sample.sent_bytes / sent_packet, sample.sent_bytes);
  return text;
}

template <class Change>
void change(const char *what, Change make) {
  if (const int failed = Store::of_process().writing(make); failed != 0)
    throw std::runtime_error(std::string("cannot ") + what + ": " + reason_text(failed));
}

} // namespace

std::vector<NvramEntry> radio_readings(const Transaction &snapshot) {
  const auto radio = radio_of(snapshot);
  return radio ? radio->readings() : std::vector<NvramEntry>();
}

std::optional<std::string> radio_reading(const Transaction &snapshot, int section, std::string_view key) {
  if (section != runtime_section) return {};
  for (auto &reading : radio_readings(snapshot))
    if (reading.key == key) return std::move(reading.value);
  return {};
}

bool radio_is_on() {
  return nvram_find(runtime_section, "host_radio").has_value();
}

void switch_radio_on(std::uint64_t seed) {
  change("switch the radio on", [seed](const Transaction &change) {
    for (const NvramEntry &reading : Radio(seed, 0).readings())
      if (const int failed = change.remove(StoredKey::setting(runtime_section, reading.key));
          failed != 0 && failed != MDB_NOTFOUND)
        return failed;
    return change.put(seed_key, std::to_string(seed));
  });
}

void switch_radio_off() {
  change("switch the radio off", [](const Transaction &change) {
    for (const NvramEntry &reading : radio_readings(change))
      if (const int failed = change.put(StoredKey::setting(runtime_section, reading.key), reading.value);
          failed != 0)
        return failed;
    return change.remove(seed_key);
  });
}

} // namespace kova::host

int kova_open_rates() {
  using namespace kova::host;
  std::string lines;
  const auto sample = [&lines](const Transaction &snapshot) {
    if (const auto radio = radio_of(snapshot))
      for (const RateSample &one : radio->samples())
        lines += line_of(one);
    return 0;
  };
  if (Store::of_process().reading(sample) != 0 || lines.empty()) return -1;
  const int file = memfd_create("rate_info", MFD_CLOEXEC);
  if (file < 0) return -1;
  if (write(file, lines.data(), lines.size()) == static_cast<ssize_t>(lines.size()) &&
      lseek(file, 0, SEEK_SET) == 0)
    return file;
  close(file);
  return -1;
}
