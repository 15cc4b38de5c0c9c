#include "src/diagnostics/udp_echo_statistics.hpp"

#include <kova/frame.h>

#include <cstdint>
#include <cstdio>
#include <cstring>

namespace kova::diagnostics {

namespace {

// The file, in the host's byte order.
struct Record {
  uint32_t packets_received, packets_responded, bytes_received, bytes_responded;
  char first_packet[64], last_packet[72];
};
static_assert(sizeof(Record) == 152);

bool read_record(Record &record) {
  FILE *file = std::fopen(
      gSecondaryInstance != 0 ? "/tmp/sec_udpEchoServerStatistics" : "/tmp/udpEchoServerStatistics", "r");
  if (file == nullptr) return false;
  const bool read = std::fread(&record, 1, sizeof record, file) > 0;
  std::fclose(file);
  return read;
}

void format(Text &text, uint32_t count) {
  std::snprintf(text.chars, Text::size, "%u", count);
}
template <std::size_t size>
void format(Text &text, const char (&time)[size]) {
  std::memcpy(text.chars, time, size); // shorter than a value: the text stays terminated
}

} // namespace

Text read_echo_statistic(EchoStatistic statistic) {
  Text text;
  Record record = {};
  if (!read_record(record)) return text;
  switch (statistic) {
  case EchoStatistic::packets_received:
    format(text, record.packets_received);
    break;
  case EchoStatistic::packets_responded:
    format(text, record.packets_responded);
    break;
  case EchoStatistic::bytes_received:
    format(text, record.bytes_received);
    break;
  case EchoStatistic::bytes_responded:
    format(text, record.bytes_responded);
    break;
  case EchoStatistic::first_packet:
    format(text, record.first_packet);
    break;
  case EchoStatistic::last_packet:
    format(text, record.last_packet);
    break;
  }
  return text;
}

} // namespace kova::diagnostics
