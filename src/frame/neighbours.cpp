// The neighbours on the LAN, as the kernel's ARP table lists them.
#include "src/frame/text.hpp"

#include <kova/frame.h>

#include <cstdio>
#include <cstring>
#include <iterator>

namespace {

// The table has fixed columns; the address stands at the start of the line.
constexpr std::size_t flags_column = 29, mac_column = 41, device_column = 72;

// Reads a line into record; false when it is no complete entry of the LAN bridge.
bool read_neighbour(const char *line, LanInfo &record) {
  char device[20] = {};
  if (std::strlen(line) <= device_column || std::sscanf(line + device_column, "%19s", device) != 1 ||
      !kova::equal(device, getLanIfName()))
    return false;

  unsigned char *ip = record.ip, *mac = record.mac;
  std::sscanf(line, "%hhu.%hhu.%hhu.%hhu", &ip[0], &ip[1], &ip[2], &ip[3]);
  std::sscanf(line + mac_column, "%hhx:%hhx:%hhx:%hhx:%hhx:%hhx", &mac[0], &mac[1], &mac[2], &mac[3], &mac[4],
              &mac[5]);
  constexpr unsigned char no_mac[sizeof record.mac] = {};
  if (std::memcmp(mac, no_mac, sizeof no_mac) == 0) return false;

  unsigned int flags = 0; // 0: the kernel is still asking for the address
  std::sscanf(line + flags_column, "0x%x", &flags);
  return flags != 0;
}

bool listed(const LanInfo *list, int count, const LanInfo &record) {
  for (int i = 0; i < count; ++i)
    if (std::memcmp(&list[i], &record, sizeof record) == 0) return true;
  return false;
}

} // namespace

static_assert(sizeof(LanInfo) == 10, "records are compared as bytes");

void getLanInfoList(LanInfo *list, int *count) {
  if (list == nullptr || count == nullptr) return;
  *count = 0;
  FILE *table = std::fopen("/proc/net/arp", "r");
  if (table == nullptr) return;

  char line[128];
  bool more = std::fgets(line, sizeof line, table) != nullptr; // the header
  while (more && std::fgets(line, sizeof line, table) != nullptr && *trim_string_newline(line) != '\0') {
    LanInfo &record = list[*count];
    record = {};
    if (read_neighbour(line, record) && !listed(list, *count, record)) ++*count;
  }
  std::fclose(table);
}
