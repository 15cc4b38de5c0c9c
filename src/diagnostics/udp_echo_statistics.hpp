// The statistics that the UDP echo server leaves in a file.
#pragma once

#include "src/frame/text.hpp"

namespace kova::diagnostics {

enum class EchoStatistic {
  packets_received,
  packets_responded,
  bytes_received,
  bytes_responded,
  first_packet, // time of the first and the last packet received
  last_packet,
};

// As text: a count as a decimal number, a time as the server wrote it; empty without a file. What a short
// file does not reach reads as 0 and "".
Text read_echo_statistic(EchoStatistic statistic);

} // namespace kova::diagnostics
