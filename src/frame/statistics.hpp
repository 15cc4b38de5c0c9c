// The counters that getInterfaceStatistic knows.
#pragma once

namespace kova {

enum Counter : int { received_bytes, received_packets, sent_bytes, sent_packets };

// Answers a counter of an interface with its unit. Without memory the caller's buffer is as it was.
int get_counter(const char *ifname, Counter counter, char *buf, unsigned int buflen);

} // namespace kova
