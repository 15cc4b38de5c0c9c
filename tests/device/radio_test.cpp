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
  fs::path rate_file() const { return device_.directory() / "root/var/rate_info"; }

  const BootedDevice device_;
};

TEST_F(Feed, SamplesEverySecondAndPublishesWhatItSamples) {
  device_.bring_up();
  const auto first = samples_in(rate_file());
  ASSERT_GE(first.size(), 2U) << "what readers need";
  EXPECT_TRUE(eventually([&] { // as fresh as readers want them, by the clock that they have
    return static_cast<unsigned long>(tarn_get_uptime()) - samples_in(rate_file()).at(0).time <= 1;
  }));
  EXPECT_TRUE(eventually([&] { return samples_in(rate_file()).size() >= first.size() + 2; }));
  const auto samples = samples_in(rate_file());
  for (std::size_t i = 1; i < samples.size(); i++) {
    const auto &newer = samples[i - 1], &older = samples[i];
    const unsigned long seconds = newer.time - older.time;
    EXPECT_GE(seconds, 1U);
    EXPECT_EQ(newer.received_bytes - older.received_bytes, newer.receive_rate * seconds);
    EXPECT_EQ(newer.sent_bytes - older.sent_bytes, newer.send_rate * seconds);
  }
  EXPECT_TRUE(device_.run([&] { // between two ticks the store and the file are of one
    EXPECT_TRUE(eventually([&] {
      const auto published = host::nvram_find(9, "lte_cur_dlcw1").value_or("0");
      const auto sampled = 8.0 * static_cast<double>(samples_in(rate_file()).at(0).receive_rate);
      return std::abs(std::stod(published) * 1024 - sampled) < 1;
    }));
  }));
}

TEST_F(Feed, IsSwitchedWithoutARestart) {
  const auto daemon_after_up = [&](bool feed) {
    feed ? unsetenv("KOVA_FEED") : setenv("KOVA_FEED", "off", 1);
    device_.bring_up();
    EXPECT_EQ(status().feed, feed);
    return status().serviced.value_or(0);
  };
  const pid_t daemon = daemon_after_up(false);
  EXPECT_FALSE(fs::exists(rate_file()));
  EXPECT_TRUE(device_.run([] { EXPECT_TRUE(host::nvram_find(9, "DM_CELL_STAT_INFO")); }));
  for (const bool feed : {true, true, false, true})
    EXPECT_EQ(daemon_after_up(feed), daemon);
  EXPECT_GE(samples_in(rate_file()).size(), 2U);
  kill(daemon, SIGKILL);
  EXPECT_TRUE(eventually([] { return !status().feed; }));
  device::down();
  EXPECT_FALSE(status().feed);
}

TEST_F(Feed, EndsWithItsDirectoryAndBringsNothingBack) {
  device_.bring_up();
  const fs::path daemon = "/proc/" + std::to_string(status().serviced.value()) + "/exe";
  fs::remove_all(device_.directory());
  EXPECT_TRUE(eventually([&] { return !fs::exists(daemon); }));
  EXPECT_FALSE(fs::exists(device_.directory()));
}

} // namespace
} // namespace kova::test
