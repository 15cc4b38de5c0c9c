// Rows of the access-control list, the IPv6 path, and its hash.
#include "rows.hpp"

#include <arpa/inet.h>

#include <random>

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
  if (inet_pton(AF_INET6, value.c_str(), &ipv6) != 1) return value == "?" ? -3 : -2;
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
  const Strings accepted = {"7,192.168.1.20,,1",
                            "7,8.8.8.8,,0",
                            "4,8.8.8.8,8.8.8.9,0",
                            "8,8.8.8.8,8.8.8.8,0",
                            "8,192.168.1.1,192.168.1.9,1",
                            "7,8.8.8.8,,0,more",
                            "7,fd00::1,,1",
                            "7,2001:db8::1,2001:db8::2,0"},
                refused = {"7,192.168.1.20,,0",
                           "7,8.8.8.8,,1",
                           "8,8.8.8.9,8.8.8.8,0",
                           "8,8.8.8.8,192.168.1.1,0",
                           "8,192.168.1.1,192.168.2.9,1",
                           "8,8.8.8.8,x,0",
                           "8,8.8.8.8,?,0",
                           "8,?,,0",
                           "8,x,,0",
                           "8,,,0",
                           "8,,8.8.8.8,0",
                           "3,8.8.8.8,,0",
                           "5,8.8.8.8,,0",
                           "6,8.8.8.8,,0",
                           "9,8.8.8.8,,0",
                           ",8.8.8.8,,0",
                           "7x,8.8.8.8,,0",
                           "7,8.8.8.8,,",
                           "7,8.8.8.8,,2",
                           "7,8.8.8.8,,-1",
                           "7,8.8.8.8,0",
                           "4, ,,0",
                           "",
                           ",,,",
                           "7," + std::string(4000, '1') + ",,0",
                           "7,fd00::1,,0",
                           "7,2001:db8::2,2001:db8::1,0",
                           "7,2001:db8::2,8.8.8.8,0",
                           "7,fe80::1%br0,,0"};
  for (const std::string &row : accepted)
    EXPECT_EQ(checkACLSettingsRulesAllParam(row.c_str(), 3), 0) << row;
  for (const std::string &row : refused)
    EXPECT_EQ(checkACLSettingsRulesAllParam(row.c_str(), 3), -1) << row.substr(0, 80);
  EXPECT_EQ(checkACLSettingsRulesAllParam(nullptr, 0), -1);
}

TEST_F(Acl, FieldsAreJudgedInTheirOrder) {
  const std::pair<const char *, Strings> cases[] = {
      {"9,x,y,2", {}},
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
  const struct {
    const char *marker, *interface, *service, *start, *end, *before;
    int result;
    const char *after;
  } cases[] = {{"", "0", "4", "2001:DB8:0:0::1", "", "", 1, "4,2001:db8::1,,0"},
               {"", "1", "7", "::1", nullptr, "4, ,,0", 1, "4, ,,0;7,::1,,1"},
               {"1", "0", "8", "::1", "0:0::2", "a", 1, "a;8,::1,::2,0"},
               {"1", "0", "8", "::1", "0::1", "a", 1, "a;8,::1,,0"},
               {"1", "0", "8", "::2", "::1", "a", 0, "a"},
               {"1", "0", "8", "2001::", "fe80::", "a", 1, "a;8,2001::,fe80::,0"},
               {"1", "0", "8", "fe80::", "2001::", "a", 0, "a"}, // bytes above 127
               {"1", "0", "8", "::1", "x", "a", 0, "a"},
               {"1", "0", "8", "::1", "1.2.3.4", "a", 0, "a"},
               {"1", "0", "8", "1.2.3.4", "", "a", 0, "a"},
               {"1", "0", "8", "", "", "a", 0, "a"},
               {"1", "0", "5", "::1", "", "a", 0, "a"},
               {"1", "0", "", "::1", "", "a", 0, "a"},
               {"1", "0", "8", "::ffff:192.168.100.200", "", "a", 1, "a;8,::ffff:192.168.100.200,,0"},
               {nullptr, "0", "8", "::1", "", "1;2;3;4;5;6;7;8;9;10;11;12;13;14;15;16", 0,
                "1;2;3;4;5;6;7;8;9;10;11;12;13;14;15;16"},
               {"", "0", "8", "::1", "", "1;2;3;4;5;6;7;8;9;10;11;12;13;14;15", 1,
                "1;2;3;4;5;6;7;8;9;10;11;12;13;14;15;8,::1,,0"},
               {"1", "0", "8", "::1", "", "1;2;3;4;5;6;7;8;9;10;11;12;13;14;15;16", 1,
                "1;2;3;4;5;6;7;8;9;10;11;12;13;14;15;16;8,::1,,0"},
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

TEST_F(Acl, SettingAnIpv6RowReplacesWhatItsCheckAppended) {
  list() = "4, ,,0";
  EXPECT_EQ(kovaSetACLSettingsRules(1, "7,2001:DB8::1,2001:db8::1,0"), 0);
  EXPECT_EQ(platform.done, (Strings{"nvram 0 AclRules=4, ,,0;7,2001:db8::1,,0",
                                    "nvram 0 AclRules=7,2001:DB8::1,2001:db8::1,0"}));
  // Refused as a repetition, it stays behind what the check appended.
  list() = "4, ,,0;7,::1,,0";
  EXPECT_EQ(kovaSetACLSettingsRules(1, "7,::1,,0"), -1);
  EXPECT_EQ(list(), "4, ,,0;7,::1,,0;7,::1,,0");
  // Sixteen rows bound the first row only.
  list() = "a;b;c;d;e;f;g;h;i;j;k;l;m;n;o;p";
  EXPECT_EQ(kovaSetACLSettingsRules(1, "7,::1,,0"), -1);
  EXPECT_EQ(kovaSetACLSettingsRules(1, "7,8.8.8.8,,0"), 0);
  EXPECT_EQ(kovaSetACLSettingsRules(2, "7,::1,,0"), 0);
  EXPECT_EQ(list(), "7,8.8.8.8,,0;7,::1,,0;c;d;e;f;g;h;i;j;k;l;m;n;o;p");
  EXPECT_EQ(kovaSetACLSettingsRules(0, "7,::2,,0"), 0); // no row, yet judged as one that is not the first
  EXPECT_EQ(list(), "7,8.8.8.8,,0;7,::1,,0;c;d;e;f;g;h;i;j;k;l;m;n;o;p");
}

// ---- The hash, stated in arithmetic modulo 2^32 over whole words of a zero-padded text

uint64_t turned(uint64_t word, int bits) {
  const uint64_t wide = word << bits;
  return wide % (1ULL << 32) + wide / (1ULL << 32);
}

uint32_t stated_hash(std::vector<uint64_t> bytes, uint64_t hash) {
  constexpr uint64_t modulus = 1ULL << 32;
  const std::size_t length = bytes.size();
  bytes.resize((length + 3) / 4 * 4);
  for (std::size_t at = 0; at < bytes.size(); at += 4) {
    uint64_t word = ((bytes[at] * 256 + bytes[at + 1]) * 256 + bytes[at + 2]) * 256 + bytes[at + 3];
    word = turned(word * 0xcc9e2d51 % modulus, 15) * 0x1b873593 % modulus;
    hash ^= word;
    if (at + 4 <= length) hash = (turned(hash, 13) * 5 + 0xe6546b64) % modulus;
  }
  hash ^= length;
  hash = (hash ^ hash / 65536) * 0x85ebca6b % modulus;
  hash = (hash ^ hash / 8192) * 0xc2b2ae35 % modulus;
  return static_cast<uint32_t>(hash ^ hash / 65536);
}

TEST(MurmurHash, AgreesWithItsVectorsAndItsStatement) {
  EXPECT_EQ(murmur_hash_3("", 0, 0), 0U);
  EXPECT_EQ(murmur_hash_3("a", 1, 0), 0xb9df0625U);
  EXPECT_EQ(murmur_hash_3("abcd", 4, 0), 0xddb94720U);
  EXPECT_EQ(murmur_hash_3("abcd", 0, 0), 0U);
  std::mt19937 random(3);
  for (std::size_t round = 0; round < 2000; ++round) {
    std::vector<unsigned char> data(round % 70);
    for (unsigned char &byte : data)
      byte = static_cast<unsigned char>(random());
    const uint32_t seed = round % 3 == 0 ? 0 : static_cast<uint32_t>(random());
    EXPECT_EQ(murmur_hash_3(data.data(), static_cast<int>(data.size()), seed),
              stated_hash({data.begin(), data.end()}, seed))
        << data.size();
  }
}

} // namespace
