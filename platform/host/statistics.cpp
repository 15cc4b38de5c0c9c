// Uptime, traffic counters and hardware addresses, from the running kernel.
#include "platform/host/nvram_sections.hpp"
#include "platform/host/text_of.hpp"
#include "platform/keys.hpp"
#include "platform/nvram.h"

#include <fcntl.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/sysinfo.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {

constexpr long long unknown = -1;

const char *counter_file(int counter) {
  switch (counter) {
  case 10:
    return "rx_bytes";
  case 11:
    return "rx_packets";
  case 2:
    return "tx_bytes";
  case 3:
    return "tx_packets";
  default:
    return nullptr;
  }
}

// A name that the kernel would take: nothing that leads elsewhere as part of a path.
bool is_interface_name(const char *name) {
  const std::string_view text = kova::host::text_of(name);
  return !text.empty() && text.size() < IFNAMSIZ && text != "." && text != ".." &&
         text.find('/') == std::string_view::npos;
}

long long read_number(const char *path) {
  const int fd = open(path, O_RDONLY | O_CLOEXEC);
  if (fd < 0) return unknown;
  char text[32] = {};
  const ssize_t length = read(fd, text, sizeof text - 1);
  close(fd);
  return length > 0 ? std::strtoll(text, nullptr, 10) : unknown;
}

int write_statistic(const char *ifname, int counter, char *text, int size) {
  if (text == nullptr || size <= 0) return -1;
  const long long count = tarn_get_if_statistic(ifname, counter);
  if (count < 0) return -1;
  char number[32];
  const int length = std::snprintf(number, sizeof number, "%lld", count);
  if (length >= size) return -1; // a cut number would be another number
  std::memcpy(text, number, static_cast<std::size_t>(length) + 1);
  return 0;
}

} // namespace

long tarn_get_uptime(void) {
  struct sysinfo info = {};
  return sysinfo(&info) == 0 ? info.uptime : 0;
}

long long tarn_get_if_statistic(const char *ifname, int counter) {
  const char *file = counter_file(counter);
  if (file == nullptr || !is_interface_name(ifname)) return unknown;
  char path[80];
  std::snprintf(path, sizeof path, "/sys/class/net/%s/statistics/%s", ifname, file);
  return read_number(path);
}

int tarn_get_ifname_statistic(const char *logical, char *text, int size, int counter) {
  const std::string_view name = kova::host::text_of(logical);
  if (name == "lan") return write_statistic("eth0", counter, text, size);
  if (name != "wan") return -1;
  char data_interface[IFNAMSIZ] = "";
  nvram_bufget_string(kova::host::runtime_section, kova::key::data_interface, data_interface,
                      sizeof data_interface);
  return write_statistic(*data_interface == '\0' ? "lte0pdn0" : data_interface, counter, text, size);
}

// Virtual access point 1, like 0, is the radio's main network; the further networks "-va0", "-va1", ... follow it.
int tarn_get_wlan_if_statistic(char *text, int size, int counter, int radio, int vap) {
  char name[40];
  if (vap <= 1)
    std::snprintf(name, sizeof name, "wlan%d", radio);
  else
    std::snprintf(name, sizeof name, "wlan%d-va%d", radio, vap - 2);
  return write_statistic(name, counter, text, size);
}

int tarn_is_interface_exist(const char *ifname) {
  return is_interface_name(ifname) && if_nametoindex(ifname) != 0 ? 0 : -1;
}

int tarn_getIfMac(const char *ifname, char *out, int size) {
  constexpr int text_size = sizeof "00:1A:2B:3C:4D:5E";
  if (!is_interface_name(ifname) || out == nullptr || size < text_size) return -1;
  ifreq request = {};
  std::strncpy(request.ifr_name, ifname, IFNAMSIZ - 1);
  const int fd = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (fd < 0) return -1;
  const int failed = ioctl(fd, SIOCGIFHWADDR, &request);
  close(fd);
  const auto family = request.ifr_hwaddr.sa_family;
  // Other kinds of link have no address, or one of another length.
  if (failed != 0 || (family != ARPHRD_ETHER && family != ARPHRD_LOOPBACK)) return -1;
  unsigned char mac[6];
  std::memcpy(mac, request.ifr_hwaddr.sa_data, sizeof mac);
  std::snprintf(out, text_size, "%02X:%02X:%02X:%02X:%02X:%02X", mac[0], mac[1], mac[2], mac[3], mac[4],
                mac[5]);
  return 0;
}
