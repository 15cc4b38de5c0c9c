// The LAN Ethernet port.
#include "src/frame/rows.hpp"
#include "src/frame/shell.hpp"
#include "src/frame/statistics.hpp"

#include <kova/lan.h>

#include <cstdio>

namespace {

constexpr const char *port = "eth0";

bool has_link() {
  return getLanSpeed(port) >= 1;
}

} // namespace

#define COUNTER_GETTER(getter, counter)                                                                      \
  int getter(char *buf, unsigned int buflen) {                                                               \
    return kova::get_counter(port, kova::counter, buf, buflen);                                              \
  }

// clang-format off
CONSTANT(kovaLANEthernetInterfaceNumberOfEntriesValue, "1")
CONSTANT(kovaLANWLANConfigurationNumberOfEntriesValue, "1")
CONSTANT(kovaGetLANEthernetInterfaceConfigStatusValue, "up")
CONSTANT(kovaGetLANEthernetInterfaceConfigEnableValue, "true")
COUNTER_GETTER(      kovaGetLANEthernetInterfaceConfigStatsBytesSentValue,      sent_bytes)
COUNTER_GETTER(      kovaLANEthernetInterfaceConfigStatsBytesReceivedValue,     received_bytes)
COUNTER_GETTER(      kovaLANEthernetInterfaceConfigStatsPacketsSentValue,       sent_packets)
COUNTER_GETTER(      kovaLANEthernetInterfaceConfigStatsPacketsReceivedValue,   received_packets)
// clang-format on

int kovaGetTR069LANEthernetInterfaceConfigMACAddressValue(char *buf, unsigned int buflen) {
  return kovaGetTR069LANMacAddress(buf, buflen); // the port has no address of its own in the bridge
}

int getTR069LanEnable(char *buf, unsigned int buflen) {
  return kova::answer(has_link() ? "1" : "0", buf, buflen);
}

int getTR069LanStatus(char *buf, unsigned int buflen) {
  return kova::answer(has_link() ? "Link Up" : "Link Down", buf, buflen);
}

int getTR069LanSpeed(char *buf, unsigned int buflen) {
  const int speed = getLanSpeed(port);
  if (speed < 1) return kova::answer("N/A", buf, buflen);
  char text[16];
  std::snprintf(text, sizeof text, "%d", speed);
  return kova::answer(text, buf, buflen);
}

int setTR069LanEnable(const char *value) {
  if (checkXSSattack(value) < 0 || kova::is_empty(value)) return -1;
  if (kova::equal(value, "0")) {
    kova::run("ucfg set config lan eth ENABLE 0; brctl delif br0 eth0; ifconfig eth0 down");
    return 0;
  }
  kova::run("ucfg set config lan eth ENABLE 1; brctl addif br0 eth0; ifconfig eth0 up");
  kova::run("sleep 2; kern eth phyr");
  return 0;
}
