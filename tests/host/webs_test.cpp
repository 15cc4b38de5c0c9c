#include "host_test.hpp"
#include "platform/host/rule_admin.hpp"
#include "platform/nvram.h"
#include "platform/webs.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

using Values = std::initializer_list<const char *>;

// A check answers "yes" to the one and "no" to the others, and then says why.
template <class Answer>
void expect(Answer yes, Values accepted, Values refused) {
  for (const char *value : accepted)
    EXPECT_TRUE(yes(value)) << value;
  for (const char *value : refused) {
    kova::host::take_complaints();
    EXPECT_FALSE(yes(value)) << value;
    const auto complaints = kova::host::take_complaints();
    EXPECT_TRUE(complaints.size() == 1 && complaints[0].find(value) != std::string::npos) << value;
  }
}

TEST(Webs, NumbersAndLengths) {
  for (const auto &in_range : {webscheckRange, websInputValueRule}) {
    expect([&](const char *value) { return in_range(value, 4, 10) != 0; }, {"4", "7", "10"},
           {"3", "11", "", " 7", "7 ", "07", "+7", "7x", "0x7", "99999999999999999999"});
    expect([&](const char *value) { return in_range(value, -5, 5) != 0; }, {"-3"}, {"-0", "-6"});
  }
  expect([](const char *value) { return webcheckNumber(value) != 0; }, {"0", "00080", "99999999999999999999"},
         {"", "-1", "1.5", "80 ", "eighty"});
  expect([](const char *value) { return websLengthRule(value, 3) != 0; }, {"", "abc"}, {"abcd"});
}

TEST(Webs, Urls) {
  expect([](const char *url) { return websCheckURL(url) >= 0; },
         {"casino", "ads.example.com", "http://ads.example.com/x?a=b&c=%2F#d", "[2001:db8::1]", "ftp://h",
          "a%20b"},
         {"", "a b", "a\"b", "<a>", "a\\b", "`a`", "{a}", "a|b", "a\n", "caf\xc3\xa9", "50%", "%2", "%zz",
          "%20%", "http://", "http:///x", "://x"});
}

TEST(Webs, Ipv4Addresses) {
  EXPECT_EQ(0xC0A80102U, websIP2Num("192.168.1.2"));
  for (const char *none : {"", "192.168.1", "192.168.1.256", "192.168.1.2/24", "x"})
    EXPECT_EQ(0U, websIP2Num(none)) << none;
  expect([](const char *ip) { return webscheckSameSubnet(ip, "255.255.252.0", "192.168.1.250") != 0; },
         {"192.168.1.2", "192.168.2.2"}, {"192.168.4.2", "", "192.168.1"});
  EXPECT_EQ(0, webscheckSameSubnet("", "255.255.255.0", ""));
  expect([](const char *ip) { return isIpLastChar0(ip) >= 0; }, {"10.0.255.10", "10.1.1.100", "", "10.1.0"},
         {"10.1.1.0"});
  expect([](const char *ip) { return isIpLastChar255(ip) >= 0; }, {"10.0.255.10", "x"}, {"10.1.1.255"});
  expect([](const char *ip) { return checkIpPrivate(ip) != 0; }, {"10.0.0.1", "172.16.0.1", "192.168.255.1"},
         {"8.8.8.8", "172.32.0.1", "", "10.0.0"});
  const auto from_10_0_0_2 = [](const char *end) { return webscheckIpStartEnd("10.0.0.2", end) != 0; };
  expect(from_10_0_0_2, {"10.0.0.2", "192.168.1.1"}, {"10.0.0.1", "10.0.0", ""}); // compared without a sign
  const auto ordered = [](const char *end) { return check_ipv4_start_end("10.0.0.2", end) == 0; };
  expect(ordered, {"10.0.0.2", "192.168.1.1", ""}, {"10.0.0.1", "10.0.0"});
}

TEST(Webs, Ipv6Addresses) {
  expect([](const char *ip) { return is_ip6_and_prefix_valid(ip) != -1; },
         {"::", "2001:DB8::1", "2001:0db8:0:0:0:0:0:1", "::ffff:192.0.2.1", "2001:db8::/32", "::/0",
          "2001:db8::1/128"},
         {"", "/64", "2001:db8::/", "2001:db8::/129", "2001:db8::/-1", "2001:db8::/064", "2001:db8::/6 4",
          "2001:db8::/32/32", "fe80::1%br0", "fe80::1%1/64", "192.0.2.1", "1:2:3:4:5:6:7", "1::2::3",
          "12345::", "::1 ", "[::1]"});
  const struct {
    const char *start, *end;
    int answer;
  } ranges[] = {{"2001:db8::1", "2001:db8::2", 0},
                {"2001:db8::1", "2001:DB8:0::1", 0},
                {"2001:db8::1", "", 0},
                {"2001:db8::10", "2001:db8::f", 5},
                {"8000::", "7fff::", 5},
                {"2001:db8:1::/48", "2001:db8::/32", 5},
                {"2001:db8::1", "192.0.2.1", 1},
                {"::", "x", 1}};
  for (const auto &[start, end, answer] : ranges)
    EXPECT_EQ(answer, check_ipv6_start_end(start, end)) << start;
}

TEST(Webs, SplitKeepsEmptyPieces) {
  using Pieces = std::vector<std::string>;
  const auto pieces = [](std::string text, const char *separator) {
    std::array<char *, 256> rows{};
    const int count = split(rows.data(), text.data(), separator);
    return Pieces(rows.begin(), rows.begin() + count);
  };
  EXPECT_EQ(pieces(";a;;", ";"), (Pieces{"", "a", "", ""}));
  EXPECT_EQ(pieces("", ";"), Pieces{""});
  EXPECT_EQ(pieces("a; b", "; "), (Pieces{"a", "b"}));
  EXPECT_EQ(pieces("a;b", ""), Pieces{"a;b"});
  EXPECT_EQ(pieces(std::string(255, ';'), ";").size(), 256U);
}

TEST(Webs, RadioModeWithBandwidthAndRate) {
  const struct {
    const char *mode;
    int wide, rate_of_b, rate_of_g;
  } radios[] = {{"BONLY", -1, 0, -1}, {"GONLY", -1, -1, 0}, {"NONLY", 0, -1, 0},
                {"BG", -1, 0, 0},     {"GN", 0, -1, 0},     {"BGN", 0, 0, 0}};
  for (const auto &radio : radios) {
    EXPECT_EQ(radio.wide, CheckRFModeAndBW(radio.mode, "1")) << radio.mode;
    EXPECT_EQ(0, CheckRFModeAndBW(radio.mode, "0")) << radio.mode;
    EXPECT_EQ(0, CheckRFModeAndRate(radio.mode, "0")) << radio.mode;
    for (const char *rate : {"1", "4"})
      EXPECT_EQ(radio.rate_of_b, CheckRFModeAndRate(radio.mode, rate)) << radio.mode << rate;
    for (const char *rate : {"5", "12"})
      EXPECT_EQ(radio.rate_of_g, CheckRFModeAndRate(radio.mode, rate)) << radio.mode << rate;
    expect([&radio](const char *rate) { return CheckRFModeAndRate(radio.mode, rate) >= 0; }, {},
           {"13", "-1", "", "x", "5x"});
  }
  kova::host::take_complaints();
  CheckRFModeAndBW("GONLY", "1");
  EXPECT_EQ(kova::host::take_complaints(),
            std::vector<std::string>{"GONLY does not go with a bandwidth of 40 MHz"});
}

TEST(Webs, ScanModeWithDuplex) {
  for (const char *duplex : {"FDD", "TDD"})
    expect([duplex](const char *code) { return webscheckScanMode(code, duplex) != -1; }, {"1", "4"},
           {"", "0", "5", "11", "x"});
  expect([](const char *duplex) { return webscheckScanMode("1", duplex) != -2; }, {"FDD", "TDD"},
         {"", "fdd", "FDDX"});
}

class WebsWithStore : public HostTest {};

TEST_F(WebsWithStore, DmzHostIsAClientOfTheLan) {
  const auto fits = [](const char *host) { return checkDMZParam(host) >= 0; };
  expect(fits, {}, {"192.168.1.50"}); // without a LAN
  nvram_bufset(0, "lan_ip", "192.168.1.1");
  nvram_bufset(0, "lan_netmask", "255.255.254.0");
  expect(fits, {"192.168.1.50", "192.168.0.255", "192.168.0.1"},
         {"192.168.1.1", "192.168.0.0", "192.168.1.255", "192.168.2.1", "", "192.168.1"});
  nvram_bufset(0, "lan_ip", "8.8.8.1");
  expect(fits, {}, {"8.8.8.8"}); // of no private network
}

TEST_F(WebsWithStore, OperationModeIsReadFromTheStore) {
  const auto is = [](int oper_mode, int vpn_type, int bcp_enable, int gre_type) {
    OperMode *mode = getOperModeFromNvram();
    EXPECT_TRUE(mode != nullptr && mode->oper_mode == oper_mode && mode->vpn_type == vpn_type &&
                mode->bcp_enable == bcp_enable && mode->gre_type == gre_type);
    OperMode_delete(mode);
  };
  is(0, 0, 0, 0);
  for (const auto &[key, value] :
       {std::pair("oper_mode", "2"), {"vpn_type", "1"}, {"bcp_enable", "1"}, {"gre_type", "-1"}})
    nvram_bufset(0, key, value);
  is(2, 1, 1, -1);
}

TEST_F(WebsWithStore, OperationModeDecidesWhichKeysAreWritable) {
  const auto writable = [](const char *key) { return OperMode_checkKeyWritableFromNvram(key) == 1; };
  nvram_bufset(0, "oper_mode", "1");
  expect(writable, {"oper_mode", "lan_ip"},
         {"vpn_type", "vpn_nat_enable", "l3vpn_default_if", "bcp_enable", "l2tp_lns_ip", "gre_type"});
  nvram_bufset(0, "oper_mode", "2");
  nvram_bufset(0, "vpn_type", "0");
  expect(
      writable,
      {"oper_mode", "lan_ip", "vpn_type", "vpn_nat_enable", "l3vpn_default_if", "bcp_enable", "l2tp_lns_ip"},
      {"gre_type", "gre_dest_ip"});
  nvram_bufset(0, "vpn_type", "1");
  expect(writable, {"vpn_type", "vpn_nat_enable", "l3vpn_default_if", "gre_type", "gre_dest_ip"},
         {"bcp_enable", "l2tp_lns_ip"});
}

TEST(WebLogin, AHashIsVerifiedWithTheStoredSaltOnly) {
  char *salt = update_rand_char(), *other = update_rand_char();
  ASSERT_TRUE(salt != nullptr && other != nullptr);
  EXPECT_STRNE(salt, other);
  const auto hash = [](const char *password, const char *with) {
    char text[64] = {};
    EXPECT_EQ(0, gen_weblogin_passwd(password, with, static_cast<int>(std::strlen(with)), text, 32));
    return std::string(text);
  };
  EXPECT_EQ(30u, hash("secret", salt).size()); // whole bytes in 31 characters
  EXPECT_EQ(hash("secret", salt), hash("secret", salt));
  EXPECT_NE(hash("secret", salt), hash("secret", other));
  EXPECT_NE(hash("secret", salt), hash("Secret", salt));
  std::free(salt);
  std::free(other);
}

} // namespace
