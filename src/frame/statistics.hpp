// The counters that getInterfaceStatistic knows.
#pragma once

namespace kova {

// The interfaces that have them.
inline constexpr const char lan_port[] = "eth0", wlan[] = "wlan0", uplink[] = "lte0pdn";

enum Counter : int { received_bytes, received_packets, sent_bytes, sent_packets };

struct Traffic {
  const char *ifname;
  Counter counter;
};
// Answers a counter of an interface with its unit. Without memory the caller's buffer is as it was.
int answer_traffic(Traffic traffic, char *buf, unsigned int buflen);

} // namespace kova
