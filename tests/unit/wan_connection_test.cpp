// The WAN device and its connection, MTU, DMZ and SIP ALG.
#include "fake/fake.hpp"

#include <arpa/inet.h>
#include <kova/management.h>
#include <kova/wan.h>

using fake::get;
using fake::platform;

namespace {

class Wan : public fake::Test {};

TEST_F(Wan, ThereIsOneOfEach) {
  platform.preset(0, "DMZEnable=1 DMZAddress=10.0.0.1");
  kova_ip_connection_getter *const getters[] = {
      kovaGetWANConnectionExternalIPAddress, kovaGetWANConnectionDMZEnable,
      kovaGetWANConnectionDMZHostIPAddress, kovaGetWANConnectionDMZAvoidRemoteManagement};
  const std::pair<kova_ip_connection_setter *, const char *> setters[] = {
      {kovaSetWANConnectionDMZEnable, "true"},
      {kovaSetWANConnectionDMZHostIPAddress, "10.0.0.1"},
      {kovaSetWANConnectionDMZAvoidRemoteManagement, "true"}};
  const int instances[][3] = {{1, 1, 1}, {0, 1, 1}, {2, 1, 1}, {1, 2, 1}, {1, 1, 0}, {1, 1, 2}};
  for (const auto &[dev, conn, ipconn] : instances) {
    SCOPED_TRACE(std::to_string(dev) + "." + std::to_string(conn) + "." + std::to_string(ipconn));
    const int result = dev == 1 && conn == 1 && ipconn == 1 ? 0 : -1;
    char buf[32];
    platform.done.clear();
    EXPECT_EQ(kovaGetWANDeviceWANAccessType(dev, buf, sizeof buf), dev == 1 ? 0 : -1);
    EXPECT_EQ(kovaGetWANConnectionIPConnectionNumberOfEntries(dev, conn, buf, sizeof buf),
              dev == 1 && conn == 1 ? 0 : -1);
    for (const auto getter : getters)
      EXPECT_EQ(getter(dev, conn, ipconn, buf, sizeof buf), result);
    for (const auto &[setter, value] : setters)
      EXPECT_EQ(setter(dev, conn, ipconn, value), result);
    EXPECT_EQ(platform.done.empty(), result != 0);
  }
}

// A line of the kernel's table, whose addresses are in the byte order of the machine.
std::string route(const char *name, const char *destination, const char *gateway, unsigned int flags,
                  const char *mask = "0.0.0.0") {
  char line[128];
  std::snprintf(line, sizeof line, "%s\t%08X\t%08X\t%04X\t0\t0\t0\t%08X\t0\t0\t0\n", name,
                inet_addr(destination), inet_addr(gateway), flags, inet_addr(mask));
  return line;
}

TEST_F(Wan, AddressesOfTheInterfaceTowardsTheServer) {
  platform.interfaces = {{"br0", "192.168.1.1", "255.255.255.0", -1, "00:00:00:00:00:01"},
                         {"lte0", "100.64.0.9", "255.192.0.0", -1, "00:00:00:00:00:02"}};
  platform.output["route | awk '/default/{print $8}'"] = "lte0\n";
  platform.files["/proc/net/route"] =
      "Iface\tDestination\tGateway \tFlags\tRefCnt\tUse\tMetric\tMask\n" +
      route("br0", "0.0.0.0", "192.168.1.2", 1) +                              // no gateway
      route("br0", "192.168.1.0", "192.168.1.3", 3, "255.255.255.0") +         // not the default route
      "malformed\n" + route("lte0", "0.0.0.0", "100.64.0.5", 3, "128.0.0.0") + // to half of all addresses
      route("lte0", "0.0.0.0", "100.64.0.1", 3) + route("lte0", "0.0.0.0", "100.64.0.2", 3);
  platform.preset(9, "lte_data_state=3");
  struct {
    const char *url, *bound;
    const char *name, *address, *mask, *mac, *gateway;
  } const cases[] = {
      {"http://acs.example.net", "", "lte0", "100.64.0.9", "255.192.0.0", "00:00:00:00:00:02", "100.64.0.1"},
      {"http://192.168.1.77", "", "br0", "192.168.1.1", "255.255.255.0", "00:00:00:00:00:01", ""},
      {"http://acs.example.net", "br0", "br0", "192.168.1.1", "255.255.255.0", "00:00:00:00:00:01", ""},
      {"no address", "", "", "", "", "", ""}};
  for (const auto &[url, bound, name, address, mask, mac, gateway] : cases) {
    SCOPED_TRACE(std::string(url) + " " + bound);
    platform.nvram[{0, "TR_ACS_URL"}] = url;
    setBindInterface(bound);
    char interface[32] = "#";
    _getInfNameOfTr069Conn(interface, sizeof interface);
    EXPECT_STREQ(interface, name);
    _getInfNameOfTr069Conn(interface, 3);
    EXPECT_EQ(interface, std::string(name).substr(0, 2));
    EXPECT_EQ(get(kovaGetTR069WANIPAddress), address);
    int result = 1;
    EXPECT_EQ(get(kovaGetTR069WANSubnetMask, result), mask);
    EXPECT_EQ(result, *mask == '\0' ? -1 : 0);
    EXPECT_EQ(get(kovaGetTR069WANConnectionMACAddress), mac);
    EXPECT_EQ(get(kovaGetTR069WANGatewayAddress), gateway);
  }
  platform.interfaces.push_back({"lte0 and more than 15 characters", "", ""});
  setBindInterface("lte0 and more than 15 characters");
  int result = 0;
  EXPECT_EQ(get(kovaGetTR069WANSubnetMask, result), "");
  EXPECT_EQ(result, -1);
  char untouched[] = "#";
  _getInfNameOfTr069Conn(untouched, 0);
  EXPECT_STREQ(untouched, "#");
  setBindInterface("lte0");
  for (const char *state : {"2", "", "30"}) {
    platform.nvram[{9, "lte_data_state"}] = state;
    EXPECT_EQ(get(kovaGetTR069WANConnectionMACAddress), "");
  }
  platform.files.clear();
  EXPECT_EQ(get(kovaGetTR069WANGatewayAddress), "");
}

} // namespace
