// The LAN Ethernet port.
#include "src/frame/rows.hpp"
#include "src/frame/shell.hpp"

#include <kova/lan.h>

namespace kova::lan {

namespace {

constexpr const char *port = "eth0";

bool has_link(const char *ifname) {
  return getLanSpeed(ifname) >= 1;
}

int answer_link(const char *ifname, char *buf, unsigned int buflen) {
  return answer(has_link(ifname) ? "Link Up" : "Link Down", buf, buflen);
}

int answer_speed(const char *ifname, char *buf, unsigned int buflen) {
  const int speed = getLanSpeed(ifname);
  return speed < 1 ? answer("N/A", buf, buflen) : answer_number(speed, buf, buflen);
}

} // namespace

} // namespace kova::lan

using namespace kova;
using namespace kova::lan;

#include "src/lan/ethernet.def"

int getTR069LanEnable(char *buf, unsigned int buflen) {
  return answer(has_link(port) ? "1" : "0", buf, buflen);
}

int setTR069LanEnable(const char *value) {
  if (checkXSSattack(value) < 0 || is_empty(value)) return -1;
  if (equal(value, "0")) {
    run("ucfg set config lan eth ENABLE 0; brctl delif br0 eth0; ifconfig eth0 down");
    return 0;
  }
  run("ucfg set config lan eth ENABLE 1; brctl addif br0 eth0; ifconfig eth0 up");
  run("sleep 2; kern eth phyr");
  return 0;
}

int kovaGetTR069LANEthernetInterfaceConfigMACAddressValue(char *buf, unsigned int buflen) {
  return kovaGetTR069LANMacAddress(buf, buflen); // the port has no address of its own in the bridge
}
