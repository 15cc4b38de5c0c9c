#include "device/radio/rate_file.hpp"

#include "device/error.hpp"
#include "device/fd.hpp"
#include "platform/host/device_dir.hpp"

#include <fcntl.h>
#include <sys/file.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <thread>

namespace kova::device {
namespace {

constexpr std::size_t kept = 10;

std::string line(const RateSample &sample) {
  char text[160];
  std::snprintf(text, sizeof text, "%lu: %lu %llu %llu %lu %llu %llu\n", sample.time, sample.receive_rate,
                sample.received_packets, sample.received_bytes, sample.send_rate, sample.sent_packets,
                sample.sent_bytes);
  return text;
}

// Readers hold it for an instant.
bool lock_soon(const Fd &file) {
  for (int attempt = 0; attempt < 20; attempt++) {
    if (flock(file.get(), LOCK_EX | LOCK_NB) == 0) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return false;
}

} // namespace

void RateFile::add(const RateSample &sample) {
  samples_.push_front(sample);
  if (samples_.size() > kept) samples_.pop_back();
  std::string text;
  for (const RateSample &one : samples_)
    text += line(one);
  const Fd file(open(path_.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK, host::private_file));
  if (!file) fail("cannot open " + path_.string());
  if (!lock_soon(file)) return;
  if (ftruncate(file.get(), 0) != 0 ||
      write(file.get(), text.data(), text.size()) != static_cast<ssize_t>(text.size()))
    fail("cannot write " + path_.string());
}

} // namespace kova::device
