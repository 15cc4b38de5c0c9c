#include "device/radio/feed.hpp"

#include "device/file_system.hpp"
#include "device/paths.hpp"
#include "platform/nvram.h"

#include <cstdio>
#include <ctime>
#include <exception>
#include <random>

namespace kova::device {
namespace {

unsigned long up_time() {
  return static_cast<unsigned long>(tarn_get_uptime());
}

// Each second of the up time that readers compare with gets one sample, shortly after it has begun.
std::chrono::milliseconds to_next_tick() {
  constexpr long second = 1000, after = 50;
  timespec now{};
  clock_gettime(CLOCK_BOOTTIME, &now);
  const long passed = now.tv_nsec / 1'000'000;
  return std::chrono::milliseconds((passed < after ? after : second + after) - passed);
}

// Only into the store of a device that is booted: one in between has no run-time facts, and gets none from
// here.
void publish(const Radio &radio) {
  if (host::nvram_find(host::runtime_section, "lte_data_state")) host::nvram_store(radio.readings());
}

} // namespace

// A reader needs two samples; the second before this one was like it.
Feed::Published::Published()
    : radio(std::random_device{}()), rate_file(on_device("/var/rate_info")), last(up_time() - 1) {
  rate_file.add(sample());
  tick();
}

void Feed::Published::tick() {
  const unsigned long now = up_time();
  if (now == last) return;
  radio.pass_second();
  count(now - last);
  last = now;
  publish(radio);
  rate_file.add(sample());
}

void Feed::Published::count(unsigned long seconds) {
  received += radio.receive_rate() * seconds;
  sent += radio.send_rate() * seconds;
}

RateSample Feed::Published::sample() const {
  constexpr unsigned long long received_packet = 1200, sent_packet = 500; // bytes on average
  return {last,     radio.receive_rate(), received / received_packet,
          received, radio.send_rate(),    sent / sent_packet,
          sent};
}

void Feed::start() {
  if (published_) return;
  published_.emplace();
  write_file(feed_mark(), "");
  next_.start(to_next_tick());
}

void Feed::stop() {
  next_.stop();
  published_.reset();
  remove_tree(feed_mark());
}

// Says once what goes wrong every second, a full disk for example.
void Feed::tick() {
  try {
    published_->tick();
    complaint_.clear();
  } catch (const std::exception &error) {
    if (complaint_ != error.what()) std::fprintf(stderr, "radio feed: %s\n", error.what());
    complaint_ = error.what();
  }
  next_.start(to_next_tick());
}

} // namespace kova::device
