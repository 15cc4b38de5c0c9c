// The radio of a booted device: its readings and rates, and what holds in place of them.
#include "booted_device.hpp"
#include "platform/host/nvram_admin.hpp"
#include "platform/host/radio_admin.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <ctime>
#include <optional>
#include <set>

namespace kova::test {
namespace {

struct Sample {
  unsigned long time, receive_rate;
  unsigned long long received_packets, received_bytes;
  unsigned long send_rate;
  unsigned long long sent_packets, sent_bytes;
  bool operator==(const Sample &) const = default;
};

std::vector<Sample> samples() {
  std::vector<Sample> samples;
  if (const int opened = open("/var/rate_info", O_RDONLY); opened >= 0) {
    FILE *file = fdopen(opened, "r");
    Sample one{};
    while (std::fscanf(file, "%lu: %lu %llu %llu %lu %llu %llu\n", &one.time, &one.receive_rate,
                       &one.received_packets, &one.received_bytes, &one.send_rate, &one.sent_packets,
                       &one.sent_bytes) == 7)
      samples.push_back(one);
    EXPECT_NE(std::feof(file), 0);
    std::fclose(file);
  }
  return samples;
}

std::optional<std::string> reading(const char *key) {
  return host::nvram_find(host::runtime_section, key);
}

class Feed : public ::testing::Test {
protected:
  void TearDown() override { unsetenv("KOVA_FEED"); }
  void up(bool feed) const {
    feed ? unsetenv("KOVA_FEED") : setenv("KOVA_FEED", "off", 1);
    device_.bring_up();
    EXPECT_EQ(device::status().feed, feed);
  }
  // As if it had been booted so many seconds ago.
  void set_up_time(long seconds) const {
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    std::ofstream(device_.directory() / "run/hardware") << now.tv_sec - seconds << " 02:00:00:00:00:01\n";
  }
  const BootedDevice device_;
};

TEST_F(Feed, IsAFunctionOfTheTime) {
  up(true);
  EXPECT_TRUE(device_.run([&] {
    std::set<std::string> powers;
    std::vector<Sample> all;
    for (long end = 3600; end > 3000; end -= 9) { // the last sample of ten is the first of the ten before
      set_up_time(end);
      const auto ten = samples();
      ASSERT_EQ(ten.size(), 10U);
      if (!all.empty() && ten[0].time == all.back().time) {
        EXPECT_EQ(ten[0], all.back());
        all.pop_back();
      }
      all.insert(all.end(), ten.begin(), ten.end());
      powers.insert(reading("lte_rsrp_per_antenna").value_or(""));
    }
    EXPECT_GT(powers.size(), 5U);
    for (std::size_t i = 1; i < all.size(); i++) {
      const Sample &newer = all[i - 1], &older = all[i];
      if (newer.time != older.time + 1) continue; // the clock has passed a second meanwhile
      ASSERT_EQ(newer.received_bytes - older.received_bytes, newer.receive_rate);
      ASSERT_EQ(newer.sent_bytes - older.sent_bytes, newer.send_rate);
      EXPECT_TRUE(newer.receive_rate > 0 && newer.receive_rate < 150'000'000 / 8);
      EXPECT_TRUE(newer.send_rate > 0 && newer.send_rate < 50'000'000 / 8);
    }
    EXPECT_TRUE(eventually([] { // within one second the readings and the samples are of one
      const double sampled = static_cast<double>(samples().at(0).receive_rate);
      return std::abs(std::stod(reading("lte_cur_dlcw1").value_or("0")) * 1024 - 8 * sampled) < 1;
    }));
  }));
}

TEST_F(Feed, GivesWayToWhatIsStoredAndStandsStillWhenItIsOff) {
  up(false);
  EXPECT_TRUE(device_.run([] { EXPECT_TRUE(reading("DM_CELL_STAT_INFO") && samples().empty()); }));
  const auto daemon = device::status().serviced;
  up(true);
  EXPECT_EQ(device::status().serviced, daemon);
  EXPECT_TRUE(device_.run([] {
    const auto keys = host::nvram_entries(host::runtime_section).size();
    host::nvram_store(std::array{host::NvramEntry{host::runtime_section, "lte_cqi0", "99"}});
    EXPECT_EQ(reading("lte_cqi0"), "99");
    EXPECT_EQ(host::nvram_entries(host::runtime_section).size(), keys);
    EXPECT_TRUE(host::nvram_remove(host::runtime_section, "lte_cqi0"));
    EXPECT_NE(reading("lte_cqi0").value_or("99"), "99");
    EXPECT_EQ(samples().size(), 10U);
    std::ofstream(device::status().directory / "root/var/rate_info") << "1: 2 3 4 5 6 7\n";
    EXPECT_EQ(samples().size(), 1U) << "a file of the device's own";
  }));
}

} // namespace
} // namespace kova::test
