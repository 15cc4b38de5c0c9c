// The LTE uplink as the data model's WAN device, connection and IP connection.
#include "platform/nvram.h"
#include "src/frame/interface_query.hpp"
#include "src/frame/rows.hpp"
#include "src/frame/shell.hpp"
#include "src/frame/statistics.hpp"
#include "src/frame/trace.hpp"
#include "src/management/reach.hpp"
#include "src/wan/indexes.hpp"

#include <arpa/inet.h>
#include <kova/wan.h>
#include <net/route.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

using namespace kova;

namespace {

// The platform's counter numbers. They look crossed; servers in the field expect them so.
constexpr int bytes_sent = 10, bytes_received = 2, packets_sent = 11, packets_received = 3;

int answer_data_counter(int counter, char *buf, unsigned int buflen) {
  char text[24];
  std::snprintf(text, sizeof text, "%lld", tarn_get_if_statistic(load(runtime("curr_data_if")), counter));
  return answer(text, buf, buflen);
}

struct InterfaceName {
  char chars[management::interface_name_size] = {};
  InterfaceName() { management::management_interface(chars); }
};

bool is_connected() {
  constexpr int connected = 3;
  return load_number(runtime("lte_data_state")) == connected;
}

// The gateway of an interface's default route in the kernel's table; "" without one.
Text default_gateway(const char *ifname) {
  Text gateway;
  FILE *table = std::fopen("/proc/net/route", "r");
  if (table == nullptr) return gateway;
  char line[256];
  while (gateway.empty() && std::fgets(line, sizeof line, table) != nullptr) {
    char name[64];
    unsigned int destination = 0, via = 0, flags = 0, mask = 0; // addresses in the kernel's own byte order
    if (std::sscanf(line, "%63s %x %x %x %*s %*s %*s %x", name, &destination, &via, &flags, &mask) != 5)
      continue;
    if (!equal(name, ifname) || destination != 0 || mask != 0 || (flags & RTF_GATEWAY) == 0) continue;
    const in_addr address = {via};
    inet_ntop(AF_INET, &address, gateway.chars, Text::size);
  }
  std::fclose(table);
  return gateway;
}

} // namespace

// ---- Of the device and its connections

#define DEVICE_GETTER(getter, call)                                                                          \
  int getter(int dev, char *buf, unsigned int buflen) {                                                      \
    return wan::indexes_are_1(dev) ? call : -1;                                                              \
  }
#define DEVICE_CONSTANT(getter, text) DEVICE_GETTER(getter, answer(text, buf, buflen))
#define DATA_COUNTER(getter, counter) DEVICE_GETTER(getter, answer_data_counter(counter, buf, buflen))
#define UPLINK_COUNTER(getter, counter)                                                                      \
  int getter(char *buf, unsigned int buflen) {                                                               \
    return get_counter("lte0pdn", counter, buf, buflen);                                                     \
  }

// clang-format off
CONSTANT(kovaGetTR069ManageableDeviceNumberOfEntries, "1")
STORED(kovaGetTR069LANDeviceNumberOfEntries, "TR_LAN_DEV_NUM")
STORED(kovaGetTR069WANDeviceNumberOfEntries, "TR_WAN_DEV_NUM")
DEVICE_CONSTANT(kovaGetWANDeviceWANConnectionNumberOfEntries, "1")
DEVICE_CONSTANT(kovaGetWANDeviceEnabledForInternet,           "true")
DEVICE_CONSTANT(kovaGetWANDeviceWANAccessType,                "LTE")
DEVICE_CONSTANT(kovaGetWANDeviceLayer1UpstreamMaxBitRate,     "27472691.2")
DEVICE_CONSTANT(kovaGetWANDeviceLayer1DownstreamMaxBitRate,   "220200960")
DATA_COUNTER(        kovaGetWANDeviceTotalBytesSent,               bytes_sent)
DATA_COUNTER(        kovaGetWANDeviceTotalBytesReceived,           bytes_received)
DATA_COUNTER(        kovaGetWANDeviceTotalPacketsSent,             packets_sent)
DATA_COUNTER(        kovaGetWANDeviceTotalPacketsReceived,         packets_received)
// Crossed too: index 0 counts received bytes, 2 sent ones.
UPLINK_COUNTER(      kovaGetWANTotalBytesSent,                     kova::received_bytes)
UPLINK_COUNTER(      kovaGetWANTotalBytesReceived,                 kova::sent_bytes)
UPLINK_COUNTER(      kovaGetWANTotalPacketsSent,                   kova::received_packets)
UPLINK_COUNTER(      kovaGetWANTotalPacketsReceived,               kova::sent_packets)
STORED(kovaGetWANConnectionSubnetMask, ::kova::runtime("wan_netmask"))
STORED(kovaGetWANConnectionX_MTU, "internet_mtu")
// clang-format on

int kovaGetWANConnectionIPConnectionNumberOfEntries(int dev, int conn, char *buf, unsigned int buflen) {
  return wan::indexes_are_1(dev, conn) ? answer("1", buf, buflen) : -1;
}

int kovaGetWANDevicePhysicalLinkStatus(char *buf, unsigned int buflen) {
  const bool exists = tarn_is_interface_exist(load(runtime("curr_data_if"))) == 0;
  return answer(exists ? "Up" : "Down", buf, buflen);
}

int kovaGetTR069WANConnectionConnectionStatus(char *buf, unsigned int buflen) {
  static constexpr char names[][32] = {"Off",       "Scanning",      "No Network", "Connecting",
                                       "Connected", "Connect error", "Scanned"};
  constexpr unsigned long last_state = 55; // beyond it, the caller's buffer is as it was
  Text state;
  if (!load(runtime("lte_ue_state"), state)) return answer("", buf, buflen);
  const unsigned long index = std::strtoul(state, nullptr, 10);
  if (index > last_state) return 0;
  return answer(index < std::size(names) ? names[index] : "", buf, buflen);
}

// ---- Of the interface over which the management server is reached

void _getInfNameOfTr069Conn(char *out, int len) {
  if (out == nullptr || len < 1) return;
  std::snprintf(out, static_cast<std::size_t>(len), "%s", InterfaceName().chars);
}

int kovaGetTR069WANConnectionMACAddress(char *buf, unsigned int buflen) {
  Text mac;
  if (!is_connected() || tarn_getIfMac(InterfaceName().chars, mac.chars, Text::size) != 0) mac = {};
  return answer(mac, buf, buflen);
}

int kovaGetTR069WANIPAddress(char *buf, unsigned int buflen) {
  char address[16] = {};
  get_interface_ip(InterfaceName().chars, address, sizeof address);
  return answer_terminated(address, buf, buflen);
}

int kovaGetTR069WANSubnetMask(char *buf, unsigned int buflen) {
  const InterfaceName interface;
  ifreq about = InterfaceQuery::named(interface.chars);
  const bool fits = std::strlen(interface.chars) < sizeof about.ifr_name;
  if (!fits || is_empty(interface.chars) || !InterfaceQuery().ask(SIOCGIFNETMASK, &about)) {
    answer("", buf, buflen);
    return -1;
  }
  return answer(inet_ntoa(address_in(about.ifr_netmask)), buf, buflen);
}

int kovaGetTR069WANGatewayAddress(char *buf, unsigned int buflen) {
  return answer(default_gateway(InterfaceName().chars), buf, buflen);
}

int kovaGetWANConnectionExternalIPAddress(int dev, int conn, int ipconn, char *buf, unsigned int buflen) {
  if (!wan::indexes_are_1(dev, conn, ipconn)) return -1;
  const Text management_address = load(runtime("mgmt_ipaddr"));
  return answer(management_address.empty() ? load(runtime("wan_ipaddr")) : management_address, buf, buflen);
}

int kovaGetTR069WANConnectionExternalIPAddress(char *buf, unsigned int buflen) {
  return kovaGetWANConnectionExternalIPAddress(1, 1, 1, buf, buflen);
}

int kovaSetWANConnectionX_MTU(const char *value) {
  constexpr Rule mtu_rule = rule_of(30, 1);
  value = text_or_empty(value);
  if (!passes(mtu_rule, value)) {
    dbg_trace("set mtu fail\n");
    return -1;
  }
  store("internet_mtu", value);
  run("test_cpeevent call 'ce_set_mtu'");
  return 0;
}
