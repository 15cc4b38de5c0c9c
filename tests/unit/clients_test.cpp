// Who is on the LAN: the stations of the WiFi networks, and the leases.
#include "fake/fake.hpp"

#include <kova/lan.h>

using fake::get;
using fake::platform;
using fake::Strings;

namespace {

class Clients : public fake::Test {};

std::string record(const std::string &lines) {
  return "1: stat_info...\n" + lines;
}

TEST_F(Clients, StationsAreReadFromACopyOfTheDriversFile) {
  const std::string copy = "/tmp/tr069_wlan0_va2_sta_info";
  EXPECT_EQ(get(getTR069WifiDeviceList3, 4), "####"); // no file
  EXPECT_EQ(platform.done, Strings{"run cp /proc/wlan0-va2/sta_info " + copy});
  platform.files[copy] = "";
  EXPECT_EQ(get(getTR069WifiDeviceList3, 4), "####");
  platform.files[copy] = "\n";
  EXPECT_EQ(get(getTR069WifiDeviceList3, 4), "");
  platform.files[copy] = record("    hwaddr: 00:11:22:33:44:55\n    aid: 1\n");
  EXPECT_EQ(get(getTR069WifiDeviceList3, 5), " 00:1"); // cut at the buffer's end
}

TEST_F(Clients, EachRecordMakesAnEntry) {
  const std::string station =
      record("    state: 7\n    hwaddr: aa:bb\n    aid: 1\n\n    rx_bw: 20M\n    tx_bw: 40M\n"
             "    wireless mode: BGN\n");
  const struct {
    std::string file;
    const char *rfmode, *list;
  } cases[] = {
      {"    hwaddr: ignored\n" + station, "", " aa:bb, 1, BGN, 40M, 20M"},
      {station.substr(0, station.size() - 1), "GONLY", " aa:bb, 1,G, 40M, 20M"}, // the last byte is not read
      {record("    wireless mode: BG\n"), "GONLY", ",,G,,"},
      {record("    wireless mode: BG\n"), "BG", ",, BG,,"},
      {record("    wireless mode: BGN\n"), "GONLY", ",, BGN,,"},
      {station + record("    hwaddr: cc:dd\n"), "", " aa:bb, 1, BGN, 40M, 20M; cc:dd, 1, BGN, 40M, 20M"},
      {record("  hwaddr: x\n    hwaddr : x\n    aid\n    rx_bw:12345678\n") + "2:", "", ",,,,1234567"},
      {record("    hwaddr:" + std::string(40, 'a') + "\n"), "", "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa,,,,"}};
  for (const auto &[file, rfmode, list] : cases) {
    platform.files["/tmp/tr069_wlan0_sta_info"] = file;
    platform.nvram[{0, "0_rfmode"}] = rfmode;
    EXPECT_EQ(get(getTR069WifiDeviceList0), list);
  }
}

TEST_F(Clients, EntriesThatDoNotFitAreLeftOut) {
  std::string &file = platform.files["/tmp/tr069_wlan0_sta_info"], list;
  const auto add = [&](std::size_t length) {
    file += record("    hwaddr:" + std::string(length, 'a') + "\n");
    return std::string(length, 'a') + ",,,,";
  };
  for (int station = 0; station < 28; ++station)
    list += (list.empty() ? "" : ";") + add(31);
  add(11); // would make 1023 characters
  list += ";" + add(10);
  file += "\n";
  EXPECT_EQ(list.size(), 1022U);
  EXPECT_EQ(get(getTR069WifiDeviceList0, 2048), list);
}

TEST_F(Clients, LeasesEndAtTheFirstMalformedLine) {
  EXPECT_EQ(get(kovaGetTR069DhcpClientStatus), "");
  std::string &leases = platform.files["/var/config/tarn_dhcpd.leases"];
  const std::pair<std::string, std::string> cases[] = {
      {"", ""},
      {"1,mac,ip,host\n2,mac,ip,other", "1,mac,ip,host;2,mac,ip,other"},
      {"1,mac,ip,host\n\n2,mac,ip,other\n", "1,mac,ip,host"},
      {"1,mac,ip\n2,mac,ip,other\n", ""},
      {"1,mac,ip,host\n" + std::string(300, 'x') + ",b,c,d\n", "1,mac,ip,host"},
      {std::string(248, 'x') + ",b,c,d\n", std::string(248, 'x') + ",b,c,d"}, // as long as a line may be
      {std::string(249, 'x') + ",b,c,d", ""}}; // as long, but nobody knows what is missing behind it
  for (const auto &[text, expected] : cases) {
    leases = text;
    EXPECT_EQ(get(kovaGetTR069DhcpClientStatus), expected) << text;
  }
  leases.clear();
  for (int i = 0; i < 200; ++i)
    leases += "1234567890,00:11:22:33:44:55,192.168.1.100,host-name\n";
  const std::string list = get(kovaGetTR069DhcpClientStatus, 4096);
  const std::size_t entry = leases.find('\n') + 1;
  EXPECT_EQ((list.size() + 1) % entry, 0U) << "whole entries only";
  EXPECT_GT(list.size() + 1 + 256, 4096 - entry);
}

} // namespace
