#include "device/radio/radio.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>

namespace kova::device {
namespace {

constexpr int cell = 12;                                            // PCI
constexpr double downlink_peak = 150e6 / 8, uplink_peak = 50e6 / 8; // bytes in a second, over 20 MHz
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

} // namespace

void Walk::move(std::mt19937 &chance) {
  constexpr double pull = 0.05;
  value += (mean - value) * pull + std::normal_distribution<double>(0, step)(chance);
  value = std::clamp(value, low, high);
}

void Radio::pass_second() {
  for (Walk *walk : {&power_, &imbalance_, &interference_, &downlink_load_, &uplink_load_})
    walk->move(chance_);
}

double Radio::antenna_power(int antenna) const {
  return antenna == 0 ? power_.value : power_.value + imbalance_.value;
}

double Radio::antenna_quality(int antenna) const {
  constexpr double noise = -108; // dBm, with the neighbours' share
  return std::clamp(antenna_power(antenna) - noise - interference_.value, -5.0, 30.0);
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

unsigned long Radio::receive_rate() const {
  const double capacity = downlink_peak * (downlink_scheme() + 1) / (best_downlink_scheme + 1);
  return static_cast<unsigned long>(capacity * downlink_load_.value);
}

unsigned long Radio::send_rate() const {
  const double capacity = uplink_peak * (uplink_scheme() + 1) / (best_uplink_scheme + 1);
  return static_cast<unsigned long>(capacity * uplink_load_.value);
}

std::vector<host::NvramEntry> Radio::readings() const {
  const int power = rounded(std::max(antenna_power(0), antenna_power(1))); // RSRP
  const double best_quality = std::max(antenna_quality(0), antenna_quality(1));
  const int quality =
      std::clamp(rounded(-6 - 5 * downlink_load_.value - (25 - best_quality) / 5), -20, -3); // RSRQ
  const int strength = 20 + power - quality; // RSSI, over 100 resource blocks
  const double sent_power = std::clamp(23 - 0.8 * (power + 105), -10.0, 23.0); // the farther, the louder
  const std::string record = std::to_string(cell) + "," + std::to_string(strength) + "," +
                             std::to_string(power) + "," + std::to_string(quality) + "," +
                             std::to_string(rounded(best_quality)) + "," + decimal(sent_power, 1);
  const double errors = std::clamp(2 - best_quality / 20 + interference_.value / 4, 0.0, 10.0); // percent
  std::vector<host::NvramEntry> entries;
  const auto add = [&entries](const char *key, std::string value) {
    entries.push_back({host::runtime_section, key, std::move(value)});
  };
  add("DM_CELL_STAT_INFO", record);
  add("lte_rsrp_per_antenna", pair(rounded(antenna_power(0)), rounded(antenna_power(1))));
  add("lte_cinr_per_antenna", pair(rounded(antenna_quality(0)), rounded(antenna_quality(1))));
  add("lte_cqi0", std::to_string(channel_quality(0)));
  add("lte_cqi1", std::to_string(channel_quality(1)));
  add("lte_dl_mcs", std::to_string(downlink_scheme()));
  add("lte_ul_mcs", std::to_string(uplink_scheme()));
  add("lte_bler_stat", decimal(errors, 2));
  add("lte_cur_dlcw1", kilobits(receive_rate()));
  add("lte_cur_ulsched", kilobits(send_rate()));
  return entries;
}

} // namespace kova::device
