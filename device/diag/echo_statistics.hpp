// The statistics of the UDP echo server, as it keeps them and as the device reads them from a file.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>

namespace kova::diag {

struct EchoStatistics {
  uint32_t packets_received = 0, packets_responded = 0, bytes_received = 0, bytes_responded = 0;
  timespec first_packet{}, last_packet{};

  // 152 bytes: the counts in the host's byte order, then the times as texts in 64 and 72 bytes.
  std::string file_content() const;
};

} // namespace kova::diag
