#include "device/diag/echo_statistics.hpp"

#include "device/diag/results.hpp"

#include <cstdio>

namespace kova::diag {
namespace {

struct Record {
  uint32_t counts[4];
  char first_packet[64], last_packet[72];
};
static_assert(sizeof(Record) == 152);

} // namespace

std::string EchoStatistics::file_content() const {
  Record record{{packets_received, packets_responded, bytes_received, bytes_responded}, {}, {}};
  std::snprintf(record.first_packet, sizeof record.first_packet, "%s", time_text(first_packet).c_str());
  std::snprintf(record.last_packet, sizeof record.last_packet, "%s", time_text(last_packet).c_str());
  return {reinterpret_cast<const char *>(&record), sizeof record};
}

} // namespace kova::diag
