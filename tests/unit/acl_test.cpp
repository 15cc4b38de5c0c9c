// Rows of the access-control list, the IPv6 path, and its hash.
#include "rows.hpp"

#include <arpa/inet.h>

#include <cstring>

using fake::platform;
using fake::Strings;

namespace {

// -1 empty, -2 no address, -4 in the gateway's network (192.168.1.0/24 and fd00::/16), else 0.
int address_rule(int group, const std::string &value, int item) {
  EXPECT_EQ(group, 16);
  EXPECT_TRUE(item == 8 || item == 9);
  in_addr ipv4;
  in6_addr ipv6;
  if (value.empty()) return -1;
  if (inet_pton(AF_INET, value.c_str(), &ipv4) == 1) return ntohl(ipv4.s_addr) >> 8 == 0xC0A801 ? -4 : 0;
  if (inet_pton(AF_INET6, value.c_str(), &ipv6) != 1) return -2;
  return ipv6.s6_addr[0] == 0xFD ? -4 : 0;
}

class Acl : public fake::Test {
protected:
  Acl() {
    platform.rule = address_rule;
    platform.nvram[{0, "AclEnable"}] = "1";
  }
  std::string &list() { return platform.nvram[{0, "AclRules"}]; }
};

TEST_F(Acl, Rows) {
  const auto check = [](const char *row) { return checkACLSettingsRulesAllParam(row, 3); };
  fake::expect_all(check, 0,
                   {"7,192.168.1.20,,1", "7,8.8.8.8,,0", "4,8.8.8.8,8.8.8.9,0", "8,8.8.8.8,8.8.8.8,0",
                    "8,192.168.1.1,192.168.1.9,1", "7,8.8.8.8,,0,more", "7,fd00::1,,1",
                    "7,2001:db8::1,2001:db8::2,0"});
  fake::expect_all(check, -1,
                   {"", ",,,", "4, ,,0",
                    // services and sides
                    "3,8.8.8.8,,0", "5,8.8.8.8,,0", "6,8.8.8.8,,0", "9,8.8.8.8,,0", ",8.8.8.8,,0",
                    "7x,8.8.8.8,,0", "7,8.8.8.8,,", "7,8.8.8.8,,2", "7,8.8.8.8,0",
                    // addresses of the other side, and none
                    "7,192.168.1.20,,0", "7,8.8.8.8,,1", "8,8.8.8.8,192.168.1.1,0",
                    "8,192.168.1.1,192.168.2.9,1", "8,8.8.8.8,x,0", "8,x,,0", "8,,,0", "8,,8.8.8.8,0",
                    "7," + std::string(4000, '1') + ",,0",
                    // ranges, and IPv6
                    "8,8.8.8.9,8.8.8.8,0", "7,fd00::1,,0", "7,2001:db8::2,2001:db8::1,0",
                    "7,2001:db8::2,8.8.8.8,0", "7,fe80::1%br0,,0"});
  EXPECT_EQ(checkACLSettingsRulesAllParam(nullptr, 0), -1);
}

TEST_F(Acl, FieldsAreJudgedInTheirOrder) {
  const std::pair<const char *, Strings> cases[] = {
      {"9,x,y,0", {}},
      {"7,x,y,0", {"16/8 x"}},
      {"7,8.8.8.8,y,0", {"16/8 8.8.8.8", "16/9 y"}},
      {"7,8.8.8.8,,0", {"16/8 8.8.8.8", "range 8.8.8.8 8.8.8.8"}}, // the start stands in for the end
      {"7,8.8.8.8,8.8.8.9,0", {"16/8 8.8.8.8", "16/9 8.8.8.9", "range 8.8.8.8 8.8.8.9"}},
      {"7,::2,::1,0", {"16/8 ::2", "16/9 ::1", "range6 ::2 ::1"}}};
  for (const auto &[row, asked] : cases) {
    platform.rules_asked.clear();
    checkACLSettingsRulesAllParam(row, 1);
    EXPECT_EQ(platform.rules_asked, asked) << row;
  }
  // A start that the rule lets pass empty has an end that is judged.
  platform.rule = [](int, const std::string &value, int item) { return item == 9 && value.empty() ? -2 : 0; };
  EXPECT_EQ(checkACLSettingsRulesAllParam("7,,,0", 1), -1);
  EXPECT_TRUE(platform.done.empty());
}

TEST_F(Acl, TheIpv6PathNormalisesAndAppends) {
  constexpr const char *fifteen = "1;2;3;4;5;6;7;8;9;10;11;12;13;14;15",
                       *sixteen = "1;2;3;4;5;6;7;8;9;10;11;12;13;14;15;16";
  const struct {
    const char *marker, *interface, *service, *start, *end, *before;
    int result;
    const char *after;
  } cases[] = {{"", "0", "4", "2001:DB8:0:0::1", "", "", 1, "4,2001:db8::1,,0"},
               {"", "1", "7", "::1", nullptr, "4, ,,0", 1, "4, ,,0;7,::1,,1"},
               {"1", "0", "8", "::1", "0:0::2", "a", 1, "a;8,::1,::2,0"},
               {"1", "0", "8", "::1", "0::1", "a", 1, "a;8,::1,,0"},
               {"1", "0", "8", "::2", "::1", "a", 0, "a"},
               {"1", "0", "8", "fe80::", "2001::", "a", 0, "a"}, // bytes above 127
               {"1", "0", "8", "::1", "x", "a", 0, "a"},
               {"1", "0", "8", "1.2.3.4", "", "a", 0, "a"},
               {"1", "0", "8", "", "", "a", 0, "a"},
               {"1", "0", "", "::1", "", "a", 0, "a"},
               {"1", "0", "8", "::ffff:192.168.100.200", "", "a", 1, "a;8,::ffff:192.168.100.200,,0"},
               {nullptr, "0", "8", "::1", "", sixteen, 0, sixteen},
               {"", "0", "8", "::1", "", fifteen, 1, "1;2;3;4;5;6;7;8;9;10;11;12;13;14;15;8,::1,,0"},
               {"1", "0", "8", "::1", "", sixteen, 1, "1;2;3;4;5;6;7;8;9;10;11;12;13;14;15;16;8,::1,,0"},
               {nullptr, nullptr, nullptr, nullptr, nullptr, "a", 0, "a"}};
  for (const auto &[marker, interface, service, start, end, before, result, after] : cases) {
    platform.done.clear();
    list() = before;
    EXPECT_EQ(_aclConfigIpv6(marker, interface, service, start, end), result) << after;
    EXPECT_EQ(list(), after);
    EXPECT_EQ(platform.done, result == 1 ? Strings{std::string("nvram 0 AclRules=") + after} : Strings{});
  }
  list() = std::string(4000, 'x'); // longer than any value is meant to be, and kept whole
  EXPECT_EQ(_aclConfigIpv6("1", "0", "8", "::1", ""), 1);
  EXPECT_EQ(list(), std::string(4000, 'x') + ";8,::1,,0");
}

TEST(MurmurHash, AgreesWithItsVectors) {
  const struct {
    const char *text;
    uint32_t seed, hash;
  } vectors[] = {{"", 1, 0x514e28b7},
                 {"a", 0, 0xb9df0625},
                 {"ab", 0, 0x55bd7463},
                 {"abc", 0, 0x81f89fce},
                 {"\xff\x80\xfe\x7f\x9c", 0x9747b28c, 0x9a5d47ce},
                 {"The quick brown fox jumps over the lazy dog", 0xffffffff, 0xae7b84c0}};
  for (const auto &[text, seed, hash] : vectors)
    EXPECT_EQ(murmur_hash_3(text, static_cast<int>(std::strlen(text)), seed), hash) << text;
  EXPECT_EQ(murmur_hash_3("abcd", 0, 0), 0U);
}

} // namespace
