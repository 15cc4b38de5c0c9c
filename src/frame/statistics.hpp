// The counters that getInterfaceStatistic knows.
#pragma once

namespace kova {

enum Counter : int { received_bytes, received_packets, sent_bytes, sent_packets };

} // namespace kova
