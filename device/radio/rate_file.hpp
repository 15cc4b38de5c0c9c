// The file in which the rate sampler keeps the last seconds of the first PDN, newest first.
#pragma once

#include <deque>
#include <filesystem>

namespace kova::device {

struct RateSample {
  unsigned long time, receive_rate; // seconds of system up time; bytes in a second
  unsigned long long received_packets, received_bytes;
  unsigned long send_rate;
  unsigned long long sent_packets, sent_bytes;
};

class RateFile {
public:
  explicit RateFile(std::filesystem::path path) : path_(std::move(path)) {}
  // Writes the last samples while it holds the file's lock, as its readers do. A reader that does not give
  // the lock back does not stop the sampler: the next writing has this sample too. Throws std::runtime_error
  // when it cannot write.
  void add(const RateSample &sample);

private:
  std::filesystem::path path_;
  std::deque<RateSample> samples_;
};

} // namespace kova::device
