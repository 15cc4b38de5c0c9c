// The WiFi radio, its networks and their stations.
#include "fake/fake.hpp"

#include <kova/lan.h>
#include <kova/transaction.h>

using fake::get;
using fake::platform;
using fake::Strings;

namespace {

class Wifi : public fake::Test {};

const std::string restart = "request 0x10000005";
TEST_F(Wifi, CheckersJudgeTheirFormBeforeTheirRule) {
  const struct {
    kova_checker *check;
    std::string rule;
    Strings passing, refused; // whatever the rule says
    // clang-format off
  } checkers[] = {
      {chkTR069WifiMode,      "1/2 ",  {"GONLY", "?"},     {""}},
      {chkTR069WifiRate,      "1/17 ", {"0", "12", "007"}, {"13", "-1", "+1", "1.0", "", "4294967297"}},
      {chkTR069WifiBandwidth, "1/19 ", {"0", "1"},         {"2", "01", "1 ", ""}}};
  // clang-format on
  for (const auto &[check, rule, passing, refused] : checkers) {
    for (const std::string &value : passing) {
      platform.rules_asked.clear();
      platform.rule = nullptr;
      EXPECT_EQ(check("Name", value.c_str()), 0) << value;
      EXPECT_EQ(platform.rules_asked, Strings{rule + value});
      platform.rule = [](int, const std::string &, int) { return -1; };
      EXPECT_EQ(check("Name", value.c_str()), -1) << value;
    }
    platform.rules_asked.clear();
    for (const std::string &value : refused)
      EXPECT_EQ(check("Name", value.c_str()), -1) << value;
    EXPECT_TRUE(platform.rules_asked.empty());
  }
}

TEST_F(Wifi, ASecurityModeGoesWithItsCipher) {
  const std::pair<kova_getter *, kova_setter *> networks[] = {
#define ENCRYPTION(n) {getTR069WifiEncryption##n, setTR069WifiEncryption##n}
      ENCRYPTION(0), ENCRYPTION(1), ENCRYPTION(2), ENCRYPTION(3)};
  const std::pair<std::string, std::string> modes[] = {
      {"OPEN", "UNDEFINED"}, {"WPA", "TKIP"}, {"WPA2", "AES"}, {"WPAWPA2", "AESTKIP"}};
  int number = 0;
  for (const auto &[getter, set] : networks) {
    const std::string network = "nvram 0 " + std::to_string(number++);
    for (const auto &[mode, cipher] : modes) {
      platform.done.clear();
      EXPECT_EQ(set(mode.c_str()), 0);
      EXPECT_EQ(platform.done,
                (Strings{network + "_authmode=" + mode, network + "_authalgo=" + cipher, restart}));
      EXPECT_EQ(get(getter), mode);
    }
    platform.done.clear();
    for (const char *refused : {"", "WEP", "open", "WPAWPA2WPAWPA2WPA"})
      EXPECT_EQ(set(refused), -1);
    EXPECT_TRUE(platform.done.empty());
  }
}

// ---- Stations

std::string record(const std::string &lines) {
  return "1: stat_info...\n" + lines;
}

TEST_F(Wifi, StationsAreReadFromACopyOfTheDriversFile) {
  const std::pair<kova_getter *, std::pair<std::string, std::string>> lists[] = {
      {getTR069WifiDeviceList0, {"/proc/wlan0/sta_info", "/tmp/tr069_wlan0_sta_info"}},
      {getTR069WifiDeviceList1, {"/proc/wlan0-va0/sta_info", "/tmp/tr069_wlan0_va0_sta_info"}},
      {getTR069WifiDeviceList2, {"/proc/wlan0-va1/sta_info", "/tmp/tr069_wlan0_va1_sta_info"}},
      {getTR069WifiDeviceList3, {"/proc/wlan0-va2/sta_info", "/tmp/tr069_wlan0_va2_sta_info"}}};
  for (const auto &[getter, paths] : lists) {
    platform = {};
    EXPECT_EQ(get(getter, 4), "####"); // no file
    EXPECT_EQ(platform.done, Strings{"run cp " + paths.first + " " + paths.second});
    platform.files[paths.second] = "";
    EXPECT_EQ(get(getter, 4), "####");
    platform.files[paths.second] = "\n";
    EXPECT_EQ(get(getter, 4), "");
    platform.files[paths.second] = record("    hwaddr: 00:11:22:33:44:55\n    aid: 1\n");
    EXPECT_EQ(get(getter), " 00:11:22:33:44:55, 1,,,");
    EXPECT_EQ(get(getter, 5), " 00:1"); // cut at the buffer's end
  }
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
