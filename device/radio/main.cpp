// The radio and rate feed of the virtual device: publishes, once a second, what the router's LTE daemon and its rate
// sampler would.
#include "device/background.hpp"
#include "device/daemons.hpp"
#include "device/error.hpp"
#include "device/paths.hpp"
#include "device/pid_file.hpp"
#include "device/radio/radio.hpp"
#include "platform/nvram.h"

#include <poll.h>

#include <cstdio>
#include <ctime>
#include <exception>
#include <random>
#include <string>

namespace {

using namespace kova;

class Feed {
public:
  void start() {
    // A reader needs two samples; the second before this one was like it.
    last_ = up_time() - 1;
    rate_file_.add(sample());
    tick();
  }

  void tick() {
    const unsigned long now = up_time();
    if (now == last_) return;
    radio_.pass_second();
    count(now - last_);
    last_ = now;
    publish();
    rate_file_.add(sample());
  }

private:
  static unsigned long up_time() { return static_cast<unsigned long>(tarn_get_uptime()); }

  void count(unsigned long seconds) {
    received_ += radio_.receive_rate() * seconds;
    sent_ += radio_.send_rate() * seconds;
  }

  device::RateSample sample() const {
    constexpr unsigned long long received_packet = 1200, sent_packet = 500; // bytes on average
    return {last_,     radio_.receive_rate(), received_ / received_packet,
            received_, radio_.send_rate(),    sent_ / sent_packet,
            sent_};
  }

  // Only into the store of a device that is there and booted: a writing would bring a removed store back.
  void publish() const {
    if (host::nvram_find(host::runtime_section, "lte_data_state")) host::nvram_store(radio_.readings());
  }

  device::Radio radio_{std::random_device{}()};
  device::RateFile rate_file_{device::on_device("/var/rate_info")};
  unsigned long last_ = 0;
  unsigned long long received_ = 0, sent_ = 0;
};

// Says once what goes wrong every second, a full disk for example.
void tick(Feed &feed, std::string &complaint) {
  try {
    feed.tick();
    complaint.clear();
  } catch (const std::exception &error) {
    if (complaint != error.what()) std::fprintf(stderr, "%s: %s\n", device::radio_feed.program, error.what());
    complaint = error.what();
  }
}

// Each second of the up time that readers compare with gets one sample, shortly after it has begun.
int milliseconds_to_next_tick() {
  constexpr long second = 1000, after = 50;
  timespec now{};
  clock_gettime(CLOCK_BOOTTIME, &now);
  const long passed = now.tv_nsec / 1'000'000;
  return static_cast<int>((passed < after ? after : second + after) - passed);
}

void serve() {
  const device::PidFile pid_file(device::run_dir() / device::radio_feed.pid_file);
  if (chdir("/") != 0) device::fail("cannot enter /"); // keeps no directory of another's
  const device::Fd stop = device::end_signals();
  Feed feed;
  feed.start();
  device::announce_ready();
  std::string complaint;
  for (pollfd ended{stop.get(), POLLIN, 0}; poll(&ended, 1, milliseconds_to_next_tick()) <= 0;) {
    if (!pid_file.stands()) return; // the device was removed
    tick(feed, complaint);
  }
}

} // namespace

int main(int argc, char **argv) {
  return device::run_in_background(device::radio_feed.program, argc, argv, serve);
}
