// Filter switches, the security level and its switches, web login.
#include "rows.hpp"

using fake::get;
using fake::platform;

namespace {

class Security : public fake::Test {};

TEST_F(Security, TheManagingClientIsFoundAmongHundreds) {
  std::string table = fake::neighbours_header;
  for (int i = 0; i < 700; ++i) {
    char mac[18];
    std::snprintf(mac, sizeof mac, "00:1a:2b:00:%02x:%02x", i / 256, i % 256);
    table += fake::neighbour("10.0." + std::to_string(i / 250) + "." + std::to_string(i % 250), mac);
  }
  platform.files["/proc/net/arp"] = table;
  platform.preset(0, "MACFilterEnable=1 MACFilterWhiteRules= curr_user_ip=10.0.2.199");
  EXPECT_EQ(kovasetMacFilteringBasicSettingModeValue("1"), 0);
  EXPECT_EQ(platform.stored(0, "WlanMACFilterWhiteRules"), "00:1A:2B:00:02:BB");
}

TEST_F(Security, AnythingButAPredefinedCombinationIsCustom) {
  const char *keys[] = {"AclEnable", "SPIFWEnabled", "BlockPortScan", "BlockSynFlood",
                        "WebsSysFirewallCustom"};
  const std::map<std::string, std::string> levels = {{"00000", "0"}, {"00110", "1"}, {"01110", "2"}};
  for (unsigned int bits = 0; bits < 32; ++bits) {
    std::string combination;
    for (unsigned int i = 0; i < 5; ++i) {
      combination += (bits >> i & 1U) != 0 ? '1' : '0';
      platform.nvram[{0, keys[i]}] = combination.substr(i);
    }
    const auto level = levels.find(combination);
    EXPECT_EQ(get(kovaGetSystemSecuritySettingsSecurityLevel), level == levels.end() ? "3" : level->second)
        << combination;
  }
}

TEST_F(Security, FieldsAndRowsOfATextAreCounted) {
  const struct {
    int index;
    const char *text;
    int outlen, result;
    const char *expected; // "#" is what stood in the buffer
  } cases[] = {{0, "a,b", 8, 0, "a"},
               {1, "a,b", 8, 0, "b"},
               {2, "a,b", 8, -1, "#"},
               {0, "", 8, 0, ""},
               {1, "", 8, -1, "#"},
               {0, nullptr, 8, 0, ""},
               {0, "abcdefg,h", 8, 0, "abcdefg"},
               {0, "a", 0, -1, "#"},
               {INT_MIN, "a,b", 8, -1, "#"}};
  for (const auto &[index, text, outlen, result, expected] : cases) {
    char field[16] = "#";
    EXPECT_EQ(getNthField(index, text, ',', field, outlen), result) << index;
    EXPECT_STREQ(field, expected) << index;
  }
  char field[8] = "#"; // a text ends at its end, whatever the separator
  EXPECT_EQ(getNthField(1, "abc\0def", '\0', field, sizeof field), -1);
  const std::pair<const char *, int> counts[] = {{nullptr, 0}, {"", 0}, {" ", 1}, {";", 2}, {"a;b;", 3}};
  for (const auto &[text, count] : counts)
    EXPECT_EQ(firewall_getRuleNums(text), count);
}

} // namespace
