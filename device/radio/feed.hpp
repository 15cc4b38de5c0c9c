// The radio and rate feed: publishes, once a second, what the router's LTE daemon and its rate sampler would.
#pragma once

#include "device/radio/radio.hpp"
#include "device/radio/rate_file.hpp"
#include "device/serviced/loop.hpp"

#include <optional>
#include <string>

namespace kova::device {

class Feed {
public:
  explicit Feed(Loop &loop) : next_(loop, [this] { tick(); }) {}
  // What it publishes is there at once.
  void start();
  void stop();

private:
  // From one start to the next stop.
  struct Published {
    Published();
    void tick();
    void count(unsigned long seconds);
    RateSample sample() const;

    Radio radio;
    RateFile rate_file;
    unsigned long last = 0; // second of the up time
    unsigned long long received = 0, sent = 0;
  };
  void tick();

  std::optional<Published> published_;
  std::string complaint_;
  Timer next_;
};

} // namespace kova::device
