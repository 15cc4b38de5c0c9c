// The WAN device and its connection, MTU, DMZ and SIP ALG.
#include "fake/fake.hpp"

#include <arpa/inet.h>
#include <kova/management.h>
#include <kova/wan.h>

using fake::get;
using fake::platform;
using fake::Strings;

namespace {

class Wan : public fake::Test {};

// A getter of an indexed parameter, as a plain one.
template <auto getter>
int of_1_1_1(char *buf, unsigned int buflen) {
  return getter(1, 1, 1, buf, buflen);
}

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

TEST_F(Wan, AddressLinkAndTrafficOfTheDevice) {
  platform.preset(9, "mgmt_ipaddr= wan_ipaddr=10.0.0.3");
  EXPECT_EQ(get(kovaGetTR069WANConnectionExternalIPAddress), "10.0.0.3");
  platform.preset(9, "mgmt_ipaddr=10.0.0.2 curr_data_if=lte0");
  EXPECT_EQ(get(kovaGetTR069WANConnectionExternalIPAddress), "10.0.0.2");
  EXPECT_EQ(get(kovaGetWANDevicePhysicalLinkStatus), "Down");
  platform.interfaces = {{"lte0", "", ""}};
  EXPECT_EQ(get(kovaGetWANDevicePhysicalLinkStatus), "Up");
  platform.counters = {{"wan 10", "2048"}, {"wan 2", "4096"}, {"wan 11", "1100"}, {"wan 3", "300"}};
  EXPECT_EQ(get(kovaGetWANTotalBytesSent), "2 KB");
  EXPECT_EQ(get(kovaGetWANTotalBytesReceived), "4 KB");
  EXPECT_EQ(get(kovaGetWANTotalPacketsSent), "1100");
  EXPECT_EQ(get(kovaGetWANTotalPacketsReceived), "300");
  const std::pair<kova_wan_device_getter *, const char *> traffic[] = {
      {kovaGetWANDeviceTotalBytesSent, "10"},
      {kovaGetWANDeviceTotalBytesReceived, "2"},
      {kovaGetWANDeviceTotalPacketsSent, "11"},
      {kovaGetWANDeviceTotalPacketsReceived, "3"}};
  for (const auto &[getter, number] : traffic) {
    platform.counters = {{std::string("lte0 ") + number, "9223372036854775807"}};
    char count[32];
    EXPECT_EQ(getter(1, count, sizeof count), 0);
    EXPECT_STREQ(count, "9223372036854775807");
  }
}

TEST_F(Wan, ConnectionStatus) {
  EXPECT_EQ(get(kovaGetTR069WANConnectionConnectionStatus), "");
  constexpr const char *names[] = {"Off",       "Scanning",      "No Network", "Connecting",
                                   "Connected", "Connect error", "Scanned"};
  for (int state = 0; state <= 60; ++state) {
    platform.nvram[{9, "lte_ue_state"}] = std::to_string(state);
    EXPECT_EQ(get(kovaGetTR069WANConnectionConnectionStatus, 14), state > 55  ? std::string(14, '#')
                                                                  : state < 7 ? names[state]
                                                                              : "")
        << state;
  }
  platform.nvram[{9, "lte_ue_state"}] = "-1";
  EXPECT_EQ(get(kovaGetTR069WANConnectionConnectionStatus, 3), "###");
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

// ---- DMZ and SIP ALG

const std::string announcement = "run test_cpeevent call \"fw_nat_cfg changed\"";

struct Change {
  kova_ip_connection_setter *set;
  const char *value;
  const char *before; // settings, and what is then stored
  const char *stored; // NULL: refused; empty: announced all the same
};

TEST_F(Wan, DmzByIndex) {
  const auto enable = kovaSetWANConnectionDMZEnable;
  const auto host = kovaSetWANConnectionDMZHostIPAddress;
  const auto avoid = kovaSetWANConnectionDMZAvoidRemoteManagement;
  // clang-format off
  const Change changes[] = {
      {enable, "true", "oper_mode=0", "DMZEnable=1"}, {enable, "false", "oper_mode=2", "DMZEnable=0"},
      {enable, "true", "oper_mode=1", nullptr}, {enable, "True", "", nullptr}, {enable, "1", "", nullptr},
      {host, "192.168.1.9", "DMZEnable=1", "DMZAddress=192.168.1.9"},
      {host, "192.168.1.9", "", "DMZAddress=192.168.1.9"}, // a missing switch allows
      {host, "192.168.1.9", "DMZEnable=0", nullptr},
      {host, "192.168.1.9", "DMZEnable=1 oper_mode=1", nullptr}, {host, "192.168.1", "DMZEnable=1", nullptr},
      {avoid, "true", "AclEnable=0 oper_mode=1", "AclEnable=1"}, {avoid, "true", "", "AclEnable=1"},
      {avoid, "true", "AclEnable=2", "AclEnable=1"}, {avoid, "true", "AclEnable=1", ""},
      {avoid, "true", "AclEnable=4", ""},
      {avoid, "false", "AclEnable=4", "AclEnable=0"}, {avoid, "false", "AclEnable=2", ""},
      {avoid, "false", "", ""}, {avoid, "0", "AclEnable=1", nullptr}};
  // clang-format on
  for (const auto &[set, value, before, stored] : changes) {
    SCOPED_TRACE(std::string(value) + " with " + before);
    platform = {};
    platform.preset(0, before);
    EXPECT_EQ(set(1, 1, 1, value), stored != nullptr ? 0 : -1);
    Strings expected;
    if (stored != nullptr && *stored != '\0') expected.push_back(std::string("nvram 0 ") + stored);
    if (stored != nullptr) expected.push_back(announcement);
    EXPECT_EQ(platform.done, expected);
  }
  platform = {};
  platform.dmz_param = -4;
  EXPECT_EQ(host(1, 1, 1, "192.168.1.9"), -1);
  EXPECT_EQ(platform.rules_asked, Strings{"dmz 192.168.1.9"});
  platform.dmz_param = 0;
  for (const char *key : {"DMZEnable", "DMZAddress"}) {
    platform.refused_key = key;
    EXPECT_EQ(key == std::string("DMZEnable") ? enable(1, 1, 1, "true") : host(1, 1, 1, "192.168.1.9"), -1);
  }
  EXPECT_TRUE(platform.done.empty());
}

TEST_F(Wan, DmzGetters) {
  const auto enable = of_1_1_1<kovaGetWANConnectionDMZEnable>;
  const auto host = of_1_1_1<kovaGetWANConnectionDMZHostIPAddress>;
  const auto avoid = of_1_1_1<kovaGetWANConnectionDMZAvoidRemoteManagement>;
  // clang-format off
  const struct {
    kova_getter *getter;
    const char *settings, *expected; // NULL: an error
  } cases[] = {
      {enable, "DMZEnable=00", "true"}, {enable, "DMZEnable=0", "false"}, {enable, "DMZEnable=", nullptr},
      {enable, "", nullptr}, {host, "DMZAddress=10.0.0.1", "10.0.0.1"}, {host, "", nullptr},
      {avoid, "AclEnable=1", "true"}, {avoid, "AclEnable=3", "true"}, {avoid, "AclEnable=4x", "true"},
      {avoid, "", "false"}, {avoid, "AclEnable=2", "false"}, {avoid, "AclEnable=5", "false"}};
  // clang-format on
  for (const auto &[getter, settings, expected] : cases) {
    platform.nvram.clear();
    platform.preset(0, settings);
    int result = 1;
    const std::string text = get(getter, result, 16);
    EXPECT_EQ(result, expected != nullptr ? 0 : -1) << settings;
    EXPECT_EQ(text, expected != nullptr ? expected : text) << settings;
  }
}

TEST_F(Wan, SipAlgIsOnOrOffWhateverElseItsRuleComplainsOf) {
  for (const char *value : {"2", "01", "true"})
    EXPECT_EQ(kovaSetALGSIPEnable(value), -1);
  platform.rule = [](int, const std::string &, int) { return -2; }; // only -1 refuses
  EXPECT_EQ(kovaSetALGSIPEnable("1"), 0);
}

} // namespace
