// The LTE uplink as the data model's WAN device, connection and IP connection.
#include "platform/keys.hpp"
#include "platform/nvram.h"
#include "src/frame/interface_query.hpp"
#include "src/frame/interfaces.hpp"
#include "src/frame/lte_state.hpp"
#include "src/frame/rows.hpp"
#include "src/frame/shell.hpp"
#include "src/management/reach.hpp"
#include "src/wan/indexes.hpp"
#include "src/wan/settings.hpp"

#include <arpa/inet.h>
#include <kova/wan.h>
#include <net/route.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace kova::wan {

namespace {

// The platform's counter numbers. They look crossed; servers in the field expect them so.
constexpr int platform_bytes_sent = 10, platform_bytes_received = 2, platform_packets_sent = 11,
              platform_packets_received = 3;

int answer_data_traffic(int counter, char *buf, unsigned int buflen) {
  return answer_number(tarn_get_if_statistic(load(runtime(key::data_interface)), counter), buf, buflen);
}

int answer_link(Key interface, char *buf, unsigned int buflen) {
  return answer(tarn_is_interface_exist(load(interface)) == 0 ? "Up" : "Down", buf, buflen);
}

// The interface over which the management server is reached; "" when there is none.
struct InterfaceName {
  char chars[management::interface_name_size] = {};
  InterfaceName() { management::management_interface(chars); }
};

int answer_address(const InterfaceName &interface, char *buf, unsigned int buflen) {
  return answer_interface_address(interface.chars, buf, buflen);
}

int answer_mask(const InterfaceName &interface, char *buf, unsigned int buflen) {
  ifreq about = InterfaceQuery::named(interface.chars);
  const bool fits = std::strlen(interface.chars) < sizeof about.ifr_name;
  if (!fits || is_empty(interface.chars) || !InterfaceQuery().ask(SIOCGIFNETMASK, &about)) {
    answer("", buf, buflen);
    return -1;
  }
  return answer(inet_ntoa(address_in(about.ifr_netmask)), buf, buflen);
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

int answer_gateway(const InterfaceName &interface, char *buf, unsigned int buflen) {
  return answer(default_gateway(interface.chars), buf, buflen);
}

int set_connection_mtu(const char *key, const char *value, Rule rule) {
  return set_mtu(key, value, rule, [] { run("test_cpeevent call 'ce_set_mtu'"); });
}

} // namespace

} // namespace kova::wan

using namespace kova;
using namespace kova::wan;

// A getter of the WAN device, of which there is one.
#define INDEXED(getter, how, what)                                                                           \
  int getter(int dev, char *buf, unsigned int buflen) {                                                      \
    return indexes_are_1(dev) ? how(what, buf, buflen) : -1;                                                 \
  }
#include "src/wan/connection.def"

int kovaGetWANConnectionIPConnectionNumberOfEntries(int dev, int conn, char *buf, unsigned int buflen) {
  return indexes_are_1(dev, conn) ? answer("1", buf, buflen) : -1;
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

void _getInfNameOfTr069Conn(char *out, int len) {
  if (out == nullptr || len < 1) return;
  std::snprintf(out, static_cast<std::size_t>(len), "%s", InterfaceName().chars);
}

int kovaGetTR069WANConnectionMACAddress(char *buf, unsigned int buflen) {
  Text mac;
  if (!lte_data_is_connected() || tarn_getIfMac(InterfaceName().chars, mac.chars, Text::size) != 0) mac = {};
  return answer(mac, buf, buflen);
}

int kovaGetWANConnectionExternalIPAddress(int dev, int conn, int ipconn, char *buf, unsigned int buflen) {
  if (!indexes_are_1(dev, conn, ipconn)) return -1;
  const Text management_address = load(runtime("mgmt_ipaddr"));
  return answer(management_address.empty() ? load(runtime("wan_ipaddr")) : management_address, buf, buflen);
}

int kovaGetTR069WANConnectionExternalIPAddress(char *buf, unsigned int buflen) {
  return kovaGetWANConnectionExternalIPAddress(1, 1, 1, buf, buflen);
}
