// The radio and rate feed: its values, its file, its life.
#include "booted_device.hpp"
#include "device/fd.hpp"
#include "device/radio/radio.hpp"
#include "platform/nvram.h"

#include <fcntl.h>
#include <sys/file.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <thread>

namespace kova::test {
namespace {

using device::status;
using namespace std::chrono_literals;

std::vector<device::RateSample> samples_in(const fs::path &path) {
  std::vector<device::RateSample> samples;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    device::RateSample one{};
    char rest = 0;
    EXPECT_EQ(std::sscanf(line.c_str(), "%lu: %lu %llu %llu %lu %llu %llu%c", &one.time, &one.receive_rate,
                          &one.received_packets, &one.received_bytes, &one.send_rate, &one.sent_packets,
                          &one.sent_bytes, &rest),
              7)
        << line;
    samples.push_back(one);
  }
  return samples;
}

TEST(RateFile, KeepsTheLastSamplesNewestFirstAndWaitsForNoReaderForEver) {
  const BootedDevice device;
  const fs::path path = device.top() / "rate_info";
  std::ofstream(path) << std::string(4000, 'x');
  device::RateFile file(path);
  constexpr auto most = ~0ULL;
  for (unsigned long time = 1; time <= 15; time++)
    file.add({time, 2 * time, 3, most, 5, 6, 7});
  auto samples = samples_in(path);
  ASSERT_EQ(samples.size(), 10U);
  EXPECT_TRUE(samples.front().time == 15 && samples.front().receive_rate == 30 && samples.back().time == 6);
  EXPECT_TRUE(samples.front().received_bytes == most && samples.front().sent_bytes == 7);

  const device::Fd reader(open(path.c_str(), O_RDONLY));
  ASSERT_EQ(flock(reader.get(), LOCK_EX), 0);
  file.add({16, 0, 0, 0, 0, 0, 0});
  EXPECT_EQ(samples_in(path).front().time, 15U);
  flock(reader.get(), LOCK_UN);
  file.add({17, 0, 0, 0, 0, 0, 0});
  samples = samples_in(path);
  EXPECT_TRUE(samples[0].time == 17 && samples[1].time == 16 && samples.size() == 10U);
  EXPECT_THROW(device::RateFile(device.top() / "none" / "rate_info").add({}), std::runtime_error);
}

class Feed : public ::testing::Test {
protected:
  void SetUp() override { unsetenv("KOVA_FEED"); }
  void TearDown() override { unsetenv("KOVA_FEED"); }
  template <typename Condition>
  static bool soon(Condition condition) {
    for (int i = 0; i < 500 && !condition(); i++)
      std::this_thread::sleep_for(10ms);
    return condition();
  }
  fs::path rate_file() const { return device_.directory() / "root/var/rate_info"; }

  const BootedDevice device_;
};

TEST_F(Feed, SamplesEverySecondAndPublishesWhatItSamples) {
  device_.bring_up();
  const auto first = samples_in(rate_file());
  ASSERT_GE(first.size(), 2U) << "what readers need";
  EXPECT_LE(static_cast<unsigned long>(tarn_get_uptime()) - first[0].time, 5U);
  EXPECT_TRUE(soon([&] { return samples_in(rate_file()).size() >= first.size() + 2; }));
  const auto samples = samples_in(rate_file());
  for (std::size_t i = 1; i < samples.size(); i++) {
    const auto &newer = samples[i - 1], &older = samples[i];
    const unsigned long seconds = newer.time - older.time;
    EXPECT_GE(seconds, 1U);
    EXPECT_EQ(newer.received_bytes - older.received_bytes, newer.receive_rate * seconds);
    EXPECT_EQ(newer.sent_bytes - older.sent_bytes, newer.send_rate * seconds);
  }
  EXPECT_TRUE(device_.run([&] { // between two ticks the store and the file are of one
    EXPECT_TRUE(soon([&] {
      const auto published = host::nvram_find(9, "lte_cur_dlcw1").value_or("0");
      const auto sampled = 8.0 * static_cast<double>(samples_in(rate_file()).at(0).receive_rate);
      return std::abs(std::stod(published) * 1024 - sampled) < 1;
    }));
  }));
}

TEST_F(Feed, LivesWithTheDevice) {
  const auto feed_after_up = [&](bool wanted) {
    wanted ? unsetenv("KOVA_FEED") : setenv("KOVA_FEED", "off", 1);
    device_.bring_up();
    EXPECT_EQ(status().radiod.has_value(), wanted);
    return status().radiod.value_or(0);
  };
  feed_after_up(false);
  EXPECT_TRUE(device_.run([] { EXPECT_TRUE(host::nvram_find(9, "DM_CELL_STAT_INFO")); }));
  feed_after_up(true);
  feed_after_up(false);
  const pid_t feed = feed_after_up(true);
  EXPECT_EQ(feed_after_up(true), feed);
  kill(feed, SIGKILL);
  EXPECT_TRUE(soon([] { return !status().radiod; }));
  EXPECT_TRUE(device_.run(device::ensure_booted));
  EXPECT_FALSE(status().radiod);
  feed_after_up(true);
  device::down();
  EXPECT_FALSE(status().radiod);
}

TEST_F(Feed, EndsWithItsDirectoryAndBringsNothingBack) {
  device_.bring_up();
  const fs::path feed = "/proc/" + std::to_string(status().radiod.value()) + "/exe",
                 daemon = "/proc/" + std::to_string(status().serviced.value()) + "/exe";
  fs::remove_all(device_.directory());
  EXPECT_TRUE(soon([&] { return !fs::exists(feed) && !fs::exists(daemon); }));
  EXPECT_FALSE(fs::exists(device_.directory()));
}

} // namespace
} // namespace kova::test
