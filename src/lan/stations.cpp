// The stations associated with each WiFi network, from the driver's station file.
#include "src/lan/stations.hpp"

#include "platform/keys.hpp"
#include "src/frame/settings.hpp"
#include "src/frame/shell.hpp"
#include "src/frame/trace.hpp"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace kova::wifi {

namespace {

constexpr const char record_marker[] = " stat_info...";
constexpr std::size_t list_limit = 1023;

// What is told of a station, with as many characters of each field as are kept.
struct Station {
  char address[32] = {}, association_id[8] = {}, mode[8] = {}, transmit_bandwidth[8] = {},
       receive_bandwidth[8] = {};
};

template <std::size_t size>
void keep(char (&field)[size], const char *value) {
  std::snprintf(field, size, "%.*s", static_cast<int>(size - 1), value);
}

// The radio reports " BG" for G-only stations too.
const char *reported_mode(const char *value) {
  const bool g_only = equal(value, " BG") && equal(load(key::wifi_mode), "GONLY");
  return g_only ? "G" : value;
}

// Takes what a line "    key: value" says. The value keeps its leading blank.
void read_line(char *line, Station &station) {
  char *value = std::strchr(line, ':');
  if (value == nullptr) return;
  *value++ = '\0';
  if (equal(line, "    hwaddr")) keep(station.address, value);
  if (equal(line, "    aid")) keep(station.association_id, value);
  if (equal(line, "    rx_bw")) keep(station.receive_bandwidth, value);
  if (equal(line, "    tx_bw")) keep(station.transmit_bandwidth, value);
  if (equal(line, "    wireless mode")) keep(station.mode, reported_mode(value));
}

// The list that is answered: entries joined by ";", those that do not fit are left out.
class StationList {
public:
  void add(const Station &station) {
    char entry[sizeof(Station) + 8];
    const int length =
        std::snprintf(entry, sizeof entry, "%s,%s,%s,%s,%s", station.address, station.association_id,
                      station.mode, station.transmit_bandwidth, station.receive_bandwidth);
    const std::size_t separator = used_ == 0 ? 0 : 1;
    if (used_ + separator + static_cast<std::size_t>(length) >= list_limit) return;
    used_ += static_cast<std::size_t>(
        std::snprintf(text_ + used_, sizeof text_ - used_, "%s%s", separator != 0 ? ";" : "", entry));
  }
  const char *text() const { return text_; }

private:
  char text_[list_limit] = {};
  std::size_t used_ = 0;
};

void read_stations(char *text, StationList &list) {
  // The fields are not cleared between records: a station that lacks one shows that of the station before it.
  Station station;
  char *record = std::strstr(text, record_marker);
  while (record != nullptr) {
    record += std::strlen(record_marker);
    char *next = std::strstr(record, record_marker);
    if (next != nullptr) *next = '\0';
    char *rest = nullptr;
    for (char *line = strtok_r(record, "\n", &rest); line != nullptr; line = strtok_r(nullptr, "\n", &rest))
      read_line(line, station);
    list.add(station);
    record = next;
  }
}

// The whole file but its last byte, on the heap; NULL when there is nothing to read.
char *read_file(const char *path) {
  FILE *file = std::fopen(path, "r");
  if (file == nullptr) return nullptr;
  char *text = nullptr;
  std::fseek(file, 0, SEEK_END);
  const long length = std::ftell(file);
  std::rewind(file);
  if (length > 0) {
    const auto size = static_cast<std::size_t>(length);
    text = static_cast<char *>(std::calloc(1, size));
    if (text != nullptr) text[std::fread(text, 1, size - 1, file)] = '\0';
    if (text == nullptr) dbg_trace("[%s] file malloc failed\n", __func__);
  } else {
    dbg_trace("[%s] file len fail \n", __func__);
  }
  std::fclose(file);
  return text;
}

} // namespace

// The driver's file cannot be read piecewise: a copy is.
int answer_stations(const StationFile &file, char *buf, unsigned int buflen) {
  run(file.copy_command);
  const OwnedText text(read_file(file.copy));
  if (text.writable() == nullptr) return 0; // the caller's buffer is as it was
  StationList list;
  read_stations(text.writable(), list);
  return answer(list.text(), buf, buflen);
}

} // namespace kova::wifi
