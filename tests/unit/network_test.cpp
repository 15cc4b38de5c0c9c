// Interfaces, routes, neighbours and traffic counters.
#include "rows.hpp"

#include <cstring>

using fake::neighbour;
using fake::platform;

namespace {

class Network : public fake::Test {
protected:
  Network() {
    platform.interfaces = {{"lo", "127.0.0.1", "255.0.0.0"},
                           {"br0", "192.168.1.1", "255.255.255.0", 1000},
                           {"eth0", "192.168.1.2", "255.255.0.0", 100000},
                           {"a-name-of-15-ch", "10.0.0.1", "255.255.255.255"},
                           {"tun0", "", ""}};
  }
};

TEST_F(Network, InterfaceAddress) {
  char out[16] = "";
  EXPECT_EQ(get_interface_ip("br0", out, sizeof out), 0);
  EXPECT_STREQ(out, "192.168.1.1");
  EXPECT_EQ(get_interface_ip("a-name-of-15-characters", out, sizeof out), 0); // the kernel's limit
  EXPECT_STREQ(out, "10.0.0.1");
  EXPECT_EQ(get_interface_ip("br0", out, 8), 0);
  EXPECT_STREQ(out, "192.168");
  for (const char *name : {static_cast<const char *>(nullptr), "tun0", "none"})
    EXPECT_EQ(get_interface_ip(name, out, sizeof out), -1);
  EXPECT_EQ(get_interface_ip("br0", nullptr, 16), -1);
  EXPECT_EQ(get_interface_ip("br0", out, 0), -1);
  platform.sockets = false;
  EXPECT_EQ(get_interface_ip("br0", out, sizeof out), -1);
  EXPECT_STREQ(out, "192.168");
}

TEST_F(Network, DefaultRouteAndPresence) {
  char out[32] = "";
  EXPECT_EQ(get_default_route_if(out, sizeof out), 0); // the command cannot be started
  EXPECT_STREQ(out, "");
  platform.output["route | awk '/default/{print $8}'"] = "lte0pdn0\n";
  EXPECT_EQ(get_default_route_if(out, sizeof out), 0);
  EXPECT_STREQ(out, "lte0pdn0");
  EXPECT_EQ(get_default_route_if(nullptr, 0), 0);
  char newlines[] = "\n\n";
  for (const int none : {0, -1})
    EXPECT_EQ(get_default_route_if(newlines, none), 0);
  EXPECT_STREQ(newlines, "\n\n"); // a buffer without room is not looked at
  EXPECT_EQ(check_net_interface("tun0"), 0);
  for (const char *name : {static_cast<const char *>(nullptr), "tun", "tun00"})
    EXPECT_EQ(check_net_interface(name), -1);
  for (const char *name : {static_cast<const char *>(nullptr), "lo"})
    EXPECT_EQ(getLanSpeed(name), -1);
  EXPECT_EQ(IPRangeCheck("10.1.1.1", "255.255.255.0", nullptr, nullptr), 0);
}

TEST_F(Network, RouteIsSoughtFromTheLastInterface) {
  const auto route = [](const char *ip, const char *name) {
    char out[16] = "";
    const int result = get_route_ifname(ip, out, sizeof out);
    EXPECT_STREQ(out, name) << ip;
    return result;
  };
  EXPECT_EQ(route("192.168.1.7", ""), -1); // tun0 comes first and has no address
  platform.interfaces.pop_back();
  EXPECT_EQ(route("192.168.1.7", "eth0"), 0); // br0 would match too
  EXPECT_EQ(route("127.9.9.9", "lo"), 0);
  EXPECT_EQ(route("8.8.8.8", ""), 1);
  EXPECT_EQ(route(nullptr, ""), -1);
  platform.interfaces[0].mask = "";
  EXPECT_EQ(route("192.168.1.7", "eth0"), 0);
  EXPECT_EQ(route("8.8.8.8", ""), -1);
  char out[] = "######";
  EXPECT_EQ(get_route_ifname("10.0.0.1", out, 3), 0);
  EXPECT_STREQ(out, "a-n###"); // no terminator
  EXPECT_EQ(get_route_ifname("10.0.0.1", nullptr, 3), -1);
  EXPECT_EQ(get_route_ifname("10.0.0.1", out, 0), -1);

  platform.interfaces.assign(16, {"lan", "10.1.0.1", "255.255.0.0"});
  platform.interfaces.push_back({"wan", "10.2.0.1", "255.255.0.0"});
  EXPECT_EQ(route("10.2.0.9", ""), 1); // there is room for 16
  std::swap(platform.interfaces[15], platform.interfaces[16]);
  EXPECT_EQ(route("10.2.0.9", "wan"), 0);
  platform.sockets = false;
  EXPECT_EQ(route("10.2.0.9", ""), -1);
}

TEST_F(Network, NeighboursOfTheBridge) {
  constexpr const char *mac = "00:1a:2b:3c:4d:5e";
  const std::string &header = fake::neighbours_header;
  const std::string first = neighbour("192.168.1.20", mac);
  std::string table =
      header + first + first + "192.168.1.6 0x2\n\r\n" + // columns of an earlier line do not count
      neighbour("192.168.1.5", mac).substr(0, 72) + "\n" + neighbour("10.0.0.1", mac, "0x2", "eth0") +
      neighbour("10.0.0.2", mac, "0x2", "br01") + neighbour("192.168.1.3", mac, "0x0") + // incomplete
      neighbour("192.168.1.8", "<none>") + neighbour("192.168.1.4", "00:00:00:00:00:00") +
      neighbour("192.168.1.21", "00:1A:2B:3C:4D:5E", "0x6") + neighbour("192.168.1.20", "ff:1a:2b:3c:4d:5e") +
      "\n" + // ends the table
      neighbour("192.168.1.7", mac);
  std::vector<LanInfo> list(200);
  const auto read = [&](const std::string &text) {
    platform.files["/proc/net/arp"] = text;
    int count = -1;
    getLanInfoList(list.data(), &count);
    return count;
  };
  EXPECT_EQ(read(table), 3);
  const unsigned char expected[] = {0,    0x1a, 0x2b, 0x3c, 0x4d, 0x5e, 192, 168, 1, 20,
                                    0,    0x1a, 0x2b, 0x3c, 0x4d, 0x5e, 192, 168, 1, 21,
                                    0xff, 0x1a, 0x2b, 0x3c, 0x4d, 0x5e, 192, 168, 1, 20};
  EXPECT_EQ(std::memcmp(list.data(), expected, sizeof expected), 0);

  table = header;
  for (int i = 1; i <= 200; ++i)
    table += neighbour("10.0.0." + std::to_string(i), mac);
  EXPECT_EQ(read(table), 200);
  EXPECT_EQ(list[199].ip[3], 200);

  EXPECT_EQ(read(header), 0);
  EXPECT_EQ(read(""), 0);
  int count = -1;
  getLanInfoList(nullptr, &count);
  EXPECT_EQ(count, -1);
  getLanInfoList(list.data(), nullptr);
  platform.files.clear();
  getLanInfoList(list.data(), &count);
  EXPECT_EQ(count, 0);
}

TEST_F(Network, ByteCountsTakeAUnitAbove1024) {
  char out[32];
  for (const auto &[count, text] : {std::pair{"x", "0 bytes"},
                                    {"1024", "1024 bytes"},
                                    {"2047", "1 KB"},
                                    {"1048577", "1024 KB"},
                                    {"1049601", "1.00 MB"},
                                    {"1073741824", "1024.00 MB"},
                                    {"1073742848", "1.00 GB"},
                                    {"109951162777600", "102400.00 GB"}}) {
    changeUnit(count, out, sizeof out);
    EXPECT_STREQ(out, text);
  }
  changeUnit("1024", out, 6);
  changeUnit(nullptr, out, 6);
  changeUnit("1", out, 0);
  changeUnit("1", nullptr, 6);
  EXPECT_STREQ(out, "1024 ");
}

TEST_F(Network, CountersByInterfaceAndNumber) {
  platform.counters = {
      {"lan 10", "2048"}, {"lan 11", "2049"}, {"lan 2", "2050"},  {"lan 3", std::string(50, '9')},
      {"wan 10", "1"},    {"wan 11", "3072"}, {"wlan 2", "4096"}, {"wlan 3", "5000"}};
  const auto counters = [](auto *counter, const char *ifname) {
    std::string texts;
    for (const int index : {0, 1, 2, 3, 4, -1}) {
      char *text = counter(ifname, index);
      texts += std::string(text) + ",";
      std::free(text);
    }
    return texts;
  };
  const std::string cut(31, '9');
  EXPECT_EQ(counters(getInterfaceStatistic, "eth0"), "2 KB,2049,2 KB," + cut + ",0,0,");
  EXPECT_EQ(counters(getInterfaceStatistic_unitnochange, "eth0"), "2048,2049,2050," + cut + ",0,0,");
  EXPECT_EQ(counters(getInterfaceStatistic, "lte0pdn"), "1 bytes,3072,0 bytes,0,0,0,");
  EXPECT_EQ(counters(getInterfaceStatistic_unitnochange, "wlan0"), "0,0,4096,5000,0,0,");
  for (const char *unknown : {"eth1", static_cast<const char *>(nullptr)})
    EXPECT_EQ(counters(getInterfaceStatistic, unknown), "0 bytes,0,0 bytes,0,0,0,");
}

} // namespace
