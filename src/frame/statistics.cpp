// Traffic counters of the device's interfaces.
#include "src/frame/statistics.hpp"

#include "platform/nvram.h"
#include "src/frame/text.hpp"

#include <kova/frame.h>

#include <cstdio>
#include <cstdlib>
#include <iterator>

namespace {

// The platform's numbers of the counters, by ours.
constexpr int platform_counters[] = {10, 11, 2, 3};

constexpr std::size_t result_size = 32;

struct CounterText {
  static constexpr int size = 63; // what the platform is told
  char chars[size + 1] = {};
};

CounterText read_counter(const char *ifname, int index) {
  CounterText text;
  if (ifname == nullptr || index < 0 || index >= static_cast<int>(std::size(platform_counters))) return text;
  const int counter = platform_counters[index];
  if (kova::equal(ifname, kova::lan_port))
    tarn_get_ifname_statistic("lan", text.chars, CounterText::size, counter);
  else if (kova::equal(ifname, kova::wlan))
    tarn_get_wlan_if_statistic(text.chars, CounterText::size, counter, 0, 1);
  else if (kova::equal(ifname, kova::uplink))
    tarn_get_ifname_statistic("wan", text.chars, CounterText::size, counter);
  return text;
}

char *counter_text(const char *ifname, int index, bool with_unit) {
  auto *result = static_cast<char *>(std::calloc(1, result_size));
  if (result == nullptr) return nullptr;
  const CounterText text = read_counter(ifname, index);
  if (with_unit && (index == kova::received_bytes || index == kova::sent_bytes))
    changeUnit(text.chars, result, result_size);
  else
    std::snprintf(result, result_size, "%.31s", text.chars[0] != '\0' ? text.chars : "0");
  return result;
}

} // namespace

void changeUnit(const char *count, char *out, int outlen) {
  if (count == nullptr || out == nullptr || outlen < 1) return;
  const auto room = static_cast<std::size_t>(outlen);
  unsigned long long whole = 0;
  std::sscanf(count, "%llu", &whole);

  // Only a count above 1024 takes the next unit; kilobytes are whole, megabytes and gigabytes are not.
  const char *unit = "bytes";
  if (whole > 1024) {
    whole >>= 10;
    unit = "KB";
  }
  if (whole <= 1024) {
    std::snprintf(out, room, "%llu %s", whole, unit);
    return;
  }
  double amount = static_cast<double>(whole) / 1024.0;
  unit = "MB";
  if (amount > 1024.0) {
    amount /= 1024.0;
    unit = "GB";
  }
  std::snprintf(out, room, "%.2lf %s", amount, unit);
}

char *getInterfaceStatistic(const char *ifname, int index) {
  return counter_text(ifname, index, true);
}

char *getInterfaceStatistic_unitnochange(const char *ifname, int index) {
  return counter_text(ifname, index, false);
}

namespace kova {

int answer_traffic(Traffic traffic, char *buf, unsigned int buflen) {
  char *text = getInterfaceStatistic(traffic.ifname, traffic.counter);
  if (text == nullptr) return 0;
  return answer(OwnedText(text), buf, buflen);
}

} // namespace kova
