// The counters that getInterfaceStatistic knows.
#pragma once

namespace kova {

enum Counter : int { received_bytes, received_packets, sent_bytes, sent_packets };

struct Traffic {
  const char *ifname;
  Counter counter;
};
// Answers a counter of an interface with its unit. Without memory the caller's buffer is as it was.
int answer_traffic(Traffic traffic, char *buf, unsigned int buflen);

} // namespace kova
