#include "device/file_system.hpp"
#include "device/formatted.hpp"
#include "device/layout.hpp"
#include "device/paths.hpp"

#include <cstdio>
#include <ctime>
#include <string>

namespace fs = std::filesystem;

namespace kova::device {
namespace {

constexpr time_t lease_seconds = 86400;

// Two clients of the LAN, both on the WiFi.
struct Client {
  const char *name, *ip, *mac, *station, *mode, *bandwidth;
};
constexpr Client clients[] = {
    {"laptop", "192.168.1.101", "02:11:22:33:44:55", "021122334455", "BGN", "40M"},
    {"printer", "192.168.1.102", "02:11:22:33:44:66", "021122334466", "BG", "20M"},
};

// Expiry time, MAC address, IP address, host name.
std::string leases() {
  const long long expiry = time(nullptr) + lease_seconds;
  std::string text;
  for (const Client &client : clients)
    text += formatted("%lld,%s,%s,%s\n", expiry, client.mac, client.ip, client.name);
  return text;
}

// Readers rely on the columns: flags at 29, hardware address at 41, device at 72.
std::string neighbours() {
  std::string text = "IP address       HW type     Flags       HW address            Mask     Device\n";
  for (const Client &client : clients)
    text += formatted("%-16s 0x%-10x0x%-10x%s     *        br0\n", client.ip, 1U, 2U, client.mac);
  return text;
}

std::string no_stations() {
  return "stations: 0\n";
}

std::string stations() {
  std::string text = formatted("stations: %zu\n", std::size(clients));
  int association = 0;
  for (const Client &client : clients)
    text += formatted(
        " stat_info...\n    hwaddr: %s\n    aid: %d\n    rx_bw: %s\n    tx_bw: %s\n    wireless mode: %s\n",
        client.station, ++association, client.bandwidth, client.bandwidth, client.mode);
  return text;
}

void place(std::string_view device_path, const std::string &text) {
  const fs::path path = on_device(device_path);
  make_directories(path.parent_path());
  write_file(path, text);
}

} // namespace

void lay_out_files() {
  remove_tree(on_device("/tmp"));
  for (const char *directory : {"/tmp", "/var/log", "/var/config", "/etc/sysconfig/script", "/bin"})
    make_directories(on_device(directory));
  place("/var/config/tarn_dhcpd.leases", leases());
  place("/proc/net/arp", neighbours());
  place("/proc/wlan0/sta_info", stations());
  for (const char *path :
       {"/proc/wlan0-va0/sta_info", "/proc/wlan0-va1/sta_info", "/proc/wlan0-va2/sta_info"})
    place(path, no_stations());
  place("/tmp/voip-call-status.txt", "Idle\n");
  place("/tmp/voip-reg-status.txt", "Registered\n");
}

} // namespace kova::device
