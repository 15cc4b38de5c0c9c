// The WiFi radio, its networks and their stations.
#include "fake/fake.hpp"

#include <kova/lan.h>
#include <kova/transaction.h>

using fake::get;
using fake::platform;
using fake::Strings;

namespace {

class Wifi : public fake::Test {};

TEST_F(Wifi, CheckersJudgeTheirFormBeforeTheirRule) {
  for (const char *value : {"13", "-1", "+1", "1.0", "", "4294967297"})
    EXPECT_EQ(chkTR069WifiRate("Name", value), -1) << value;
  EXPECT_EQ(chkTR069WifiBandwidth("Name", "01") + chkTR069WifiMode("Name", ""), -2);
  EXPECT_TRUE(platform.rules_asked.empty());
  for (const char *value : {"0", "12", "007"})
    EXPECT_EQ(chkTR069WifiRate("Name", value), 0) << value;
  EXPECT_EQ(platform.rules_asked, (Strings{"1/17 0", "1/17 12", "1/17 007"}));
  fake::refuse_all();
  EXPECT_EQ(chkTR069WifiRate("Name", "0"), -1);
}

TEST_F(Wifi, ASecurityModeGoesWithItsCipher) {
  const std::pair<std::string, std::string> modes[] = {
      {"OPEN", "UNDEFINED"}, {"WPA", "TKIP"}, {"WPA2", "AES"}, {"WPAWPA2", "AESTKIP"}};
  for (const auto &[mode, cipher] : modes) {
    EXPECT_EQ(fake::effect(setTR069WifiEncryption3, mode.c_str()),
              (Strings{"nvram 0 3_authmode=" + mode, "nvram 0 3_authalgo=" + cipher, "request 0x10000005"}));
    EXPECT_EQ(get(getTR069WifiEncryption3), mode);
  }
  for (const char *refused : {"", "WEP", "open", "WPAWPA2WPAWPA2WPA"})
    EXPECT_EQ(fake::effect(setTR069WifiEncryption0, refused, -1), Strings{});
}

// ---- Stations

std::string record(const std::string &lines) {
  return "1: stat_info...\n" + lines;
}

TEST_F(Wifi, StationsAreReadFromACopyOfTheDriversFile) {
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

TEST_F(Wifi, EachRecordMakesAnEntry) {
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

TEST_F(Wifi, EntriesThatDoNotFitAreLeftOut) {
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

} // namespace
