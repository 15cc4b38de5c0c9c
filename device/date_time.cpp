#include "device/date_time.hpp"

#include <cstdio>

namespace kova::device {

timespec now() {
  timespec time{};
  clock_gettime(CLOCK_REALTIME, &time);
  return time;
}

std::string date_time(const timespec &time, Fraction fraction) {
  tm parts{};
  gmtime_r(&time.tv_sec, &parts);
  char text[48];
  const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts);
  if (fraction == Fraction::milliseconds)
    std::snprintf(text + length, sizeof text - length, ".%03ldZ", time.tv_nsec / 1'000'000);
  else
    std::snprintf(text + length, sizeof text - length, ".%06ldZ", time.tv_nsec / 1'000);
  return text;
}

} // namespace kova::device
