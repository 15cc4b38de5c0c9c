#include "platform/webs.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace {

TEST(WebsRules, NumbersAndLengths) {
  for (const auto &in_range : {webscheckRange, websInputValueRule}) {
    for (const char *value : {"4", "7", "10"})
      EXPECT_NE(0, in_range(value, 4, 10)) << value;
    for (const char *value : {"3", "11", "", " 7", "7 ", "07", "+7", "7x", "0x7", "99999999999999999999"})
      EXPECT_EQ(0, in_range(value, 4, 10)) << value;
    EXPECT_NE(0, in_range("-3", -5, 5));
    EXPECT_EQ(0, in_range("-0", -5, 5));
  }
  for (const char *number : {"0", "00080", "99999999999999999999"})
    EXPECT_NE(0, webcheckNumber(number)) << number;
  for (const char *other : {"", "-1", "1.5", "80 ", "eighty"})
    EXPECT_EQ(0, webcheckNumber(other)) << other;
  EXPECT_NE(0, websLengthRule("abc", 3));
  EXPECT_EQ(0, websLengthRule("abcd", 3));
}

TEST(WebsRules, Url) {
  for (const char *url : {"casino", "ads.example.com", "http://ads.example.com/x?a=b&c=%2F#d",
                          "[2001:db8::1]", "ftp://h", "a%20b"})
    EXPECT_LE(0, websCheckURL(url)) << url;
  for (const char *url : {"", "a b", "a\"b", "<a>", "a\\b", "`a`", "{a}", "a|b", "a\n", "caf\xc3\xa9", "50%",
                          "%2", "%zz", "%20%", "http://", "http:///x", "://x"})
    EXPECT_GT(0, websCheckURL(url)) << url;
}

TEST(WebsRules, Ipv4) {
  EXPECT_GT(0, isIpLastChar0("10.1.1.0"));
  EXPECT_GT(0, isIpLastChar255("10.1.1.255"));
  for (const char *ip : {"10.0.255.10", "10.1.1.100", "10.1.1", "", "x"})
    EXPECT_TRUE(isIpLastChar0(ip) >= 0 && isIpLastChar255(ip) >= 0) << ip;
  for (const char *ip : {"10.0.0.1", "172.16.0.1", "192.168.255.1"})
    EXPECT_NE(0, checkIpPrivate(ip)) << ip;
  for (const char *ip : {"8.8.8.8", "172.32.0.1", "", "10.0.0"})
    EXPECT_EQ(0, checkIpPrivate(ip)) << ip;
  EXPECT_EQ(0, check_ipv4_start_end("10.0.0.1", "192.168.1.1")) << "compared without a sign";
  EXPECT_EQ(0, check_ipv4_start_end("10.0.0.1", "10.0.0.1"));
  EXPECT_EQ(0, check_ipv4_start_end("10.0.0.1", ""));
  EXPECT_NE(0, check_ipv4_start_end("10.0.0.2", "10.0.0.1"));
  EXPECT_NE(0, check_ipv4_start_end("10.0.0.2", "10.0.0"));
}

TEST(WebsRules, Ipv6) {
  for (const char *ip : {"::", "2001:DB8::1", "2001:0db8:0:0:0:0:0:1", "::ffff:192.0.2.1", "2001:db8::/32",
                         "::/0", "2001:db8::1/128"})
    EXPECT_NE(-1, is_ip6_and_prefix_valid(ip)) << ip;
  for (const char *ip : {"", "/64", "2001:db8::/", "2001:db8::/129", "2001:db8::/-1", "2001:db8::/064",
                         "2001:db8::/6 4", "2001:db8::/32/32", "fe80::1%br0", "fe80::1%1/64", "192.0.2.1",
                         "1:2:3:4:5:6:7", "1::2::3", "12345::", "::1 ", "[::1]"})
    EXPECT_EQ(-1, is_ip6_and_prefix_valid(ip)) << ip;
  const struct {
    const char *start, *end;
    int answer;
  } ranges[] = {{"2001:db8::1", "2001:db8::2", 0},
                {"2001:db8::1", "2001:DB8:0::1", 0},
                {"2001:db8::1", "", 0},
                {"2001:db8::10", "2001:db8::f", 5},
                {"8000::", "7fff::", 5},
                {"2001:db8:1::/48", "2001:db8::/32", 5}};
  for (const auto &[start, end, answer] : ranges)
    EXPECT_EQ(answer, check_ipv6_start_end(start, end)) << start;
  for (const char *end : {"192.0.2.1", "x"})
    EXPECT_TRUE(check_ipv6_start_end("2001:db8::1", end) != 0 && check_ipv6_start_end("::", end) != 5) << end;
}

TEST(WebsRules, SplitKeepsEmptyPieces) {
  using Pieces = std::vector<std::string>;
  const auto pieces = [](std::string text, const char *separator) {
    std::array<char *, 256> rows{};
    const int count = split(rows.data(), text.data(), separator);
    return Pieces(rows.begin(), rows.begin() + count);
  };
  EXPECT_EQ(pieces("a;b;c", ";"), (Pieces{"a", "b", "c"}));
  EXPECT_EQ(pieces(";a;;", ";"), (Pieces{"", "a", "", ""}));
  EXPECT_EQ(pieces("", ";"), Pieces{""});
  EXPECT_EQ(pieces("a; b", "; "), (Pieces{"a", "b"}));
  EXPECT_EQ(pieces("a;b", ""), Pieces{"a;b"});
  EXPECT_EQ(pieces(std::string(255, ';'), ";").size(), 256U);
}

} // namespace
