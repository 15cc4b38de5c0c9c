// The checks of MAC and URL rows.
#include "rows.hpp"

using fake::platform;
using fake::Strings;

namespace {

class FilterRows : public fake::Test {
protected:
  FilterRows() {
    platform.preset(0, "MACFilterEnable=1 URLFilterEnable=1 MACFilterMode=0 URLFilterMode=0");
    platform.preset(9, "lan_mac=001A2B3C4D5E wlan_mac=001a2b3c4d5f curr_user_ip=10.0.0.7");
    platform.files["/proc/net/arp"] =
        fake::neighbours_header + fake::neighbour("10.0.0.7", "aa:bb:cc:dd:ee:0f");
  }
};

TEST_F(FilterRows, AddressesThatNoMacRowMayName) {
  const std::pair<int, Strings> answers[] = {
      {-1, {"00:00:00:00:00:00"}},
      {-2, {"FF:FF:FF:FF:FF:FF"}},
      {-3, {"fF:ff:ff:ff:ff:ff"}},
      {-4, {"00:1A:2B:3C:4D:5E", "00:1a:2b:3c:4d:5f", "00:1A:2B:3C:4D:5E and more"}},
      {-5, {"AA:BB:CC:DD:EE:0F"}},
      {0,
       {"ff:ff:ff:ff:ff:ff", "00:1a:2b:3c:4d:5e", "00:1A:2B:3C:4D:5F", "00:1A:2B:3C:4D:5",
        "aa:bb:cc:dd:ee:0f", "AA:BB:CC:DD:EE:0F ", ""}}};
  for (const auto &[code, values] : answers)
    for (const std::string &value : values) {
      EXPECT_EQ(checkInvalidMacParam(value.c_str()), code) << value;
      EXPECT_EQ(checkMACFilterAllParam(value.c_str()), code == 0 && !value.empty() ? 0 : -1) << value;
    }
  for (const char *mode : {"1", ""}) { // the manager may be named in a white list
    platform.nvram[{0, "MACFilterMode"}] = mode;
    EXPECT_EQ(checkInvalidMacParam("00:1A:2B:3C:4D:5E"), -4);
    EXPECT_EQ(checkInvalidMacParam("AA:BB:CC:DD:EE:0F"), 0);
  }
  EXPECT_EQ(checkInvalidMacParam(nullptr), 0);
  std::string multicast;
  for (const char digit : std::string("0123456789ABCDEFabcdef"))
    if (checkInvalidMacParam((std::string("0") + digit + ":22:33:44:55:66").c_str()) == -3)
      multicast += digit;
  EXPECT_EQ(multicast, "13579BDF");
  platform.preset(0, "MACFilterMode=0 curr_user_ip=10.0.0.7"); // only the running device's manager counts
  platform.nvram.erase({9, "curr_user_ip"});
  EXPECT_EQ(checkInvalidMacParam("AA:BB:CC:DD:EE:0F"), 0);
  platform.nvram[{9, "lan_mac"}] = "001A2B"; // too short to be an address
  EXPECT_EQ(checkInvalidMacParam("00:1A:2B:::"), 0);
  platform.rule = [](int group, const std::string &, int item) { return group == 13 && item == 4 ? -3 : 0; };
  EXPECT_EQ(checkMACFilterAllParam("00:00:00:00:00:01"), -1);
}

TEST_F(FilterRows, RepetitionIsSoughtInTheListThatTheModeChooses) {
  platform.nvram[{0, "MACFilterRules"}] = "a;b;c";
  platform.nvram[{0, "MACFilterWhiteRules"}] = "w";
  const struct {
    const char *value, *mode, *index;
    int code;
  } cases[] = {{"b", "0", "", 1}, {"b", "0", nullptr, 1}, {"b", "0", "1", 0}, {"b", "0", "0", 1},
               {"B", "0", "", 0}, {"a;b", "0", "", 0},    {"b", "1", "", 0},  {"w", "1", "", 1},
               {"w", "", "", 1},  {"w", nullptr, "", 1},  {"", "0", "", 0},   {nullptr, "0", "", 0}};
  for (const auto &[value, mode, index, code] : cases)
    EXPECT_EQ(checkMacReplyParam(value, mode, index), code) << (value != nullptr ? value : "NULL");
  std::string &list = platform.nvram[{0, "MACFilterRules"}] = std::string(271, 'f');
  EXPECT_EQ(checkMacReplyParam(list.c_str(), "0", ""), 1);
  list += "f";
  EXPECT_EQ(checkMacReplyParam("a", "0", ""), 2);
}

TEST_F(FilterRows, AUrlIsJudgedByItsFirstRuleFirst) {
  platform.nvram[{0, "URLFilterRules"}] = "one";
  platform.rule = [](int group, const std::string &, int item) { return group == 15 && item == 4 ? -1 : 0; };
  EXPECT_EQ(kovaSetURLBlackFilterRules(1, "four"), -1);
  EXPECT_EQ(platform.rules_asked, Strings{"15/4 four"}); // and the second rule is not asked
}

TEST_F(FilterRows, UrlRowsAreCountedAndCompared) {
  std::string &list = platform.nvram[{0, "URLFilterRules"}];
  list = "1;2;3;4;5;6;7;8;9;10;11;12;13;14;15";
  EXPECT_EQ(checkURLParamCount("0"), 15);
  EXPECT_EQ(checkURLParamCount("1"), 0);
  EXPECT_EQ(checkURLParamCount(nullptr), 0);
  list += ";OTHER";
  EXPECT_EQ(checkUrlFilterParam("sixteenth", 1, "", "0"), -1);
  EXPECT_EQ(checkUrlFilterParam("sixteenth", 0, "", "0"), 0); // the count does not matter
  EXPECT_EQ(checkURLReplyParam("other", "", "0"), 1);
  EXPECT_EQ(checkURLReplyParam("other", "15", "0"), 0);
  EXPECT_EQ(checkURLReplyParam("other", "", "1"), 0);
  EXPECT_EQ(checkURLReplyParam("1", nullptr, "0"), 0); // no index text counts as the first position
}

} // namespace
