// The checks of IPv4 and IPv6 filter rows.
#include "rows.hpp"

#include <algorithm>
#include <cstring>

using fake::expect_all;
using fake::platform;
using fake::Strings;

namespace {

class IpFilter : public fake::Test {
protected:
  IpFilter() { platform.nvram = {{{0, "lan_ip"}, "192.168.1.1"}, {{0, "lan_netmask"}, "255.255.255.0"}}; }
};

const std::string c32(32, 'c'), c33 = c32 + "c", c19(19, 'c'), c20 = c19 + "c", lan = "192.168.1.10,,,,,,,,";

// The platform's rules accept everything: what is refused is refused by the check itself.
TEST_F(IpFilter, Ipv4Rows) {
  expect_all(checkIPFilterAllParam, 0,
             {"192.168.1.10,,,,8.8.8.8,,80,,1,web", lan + "1,x", lan + "1,x,further fields are nobody's",
              lan + "0000000000000000006,x", // 19 characters
              // one side alone may be either; ranges stay on one side, a rule crosses between the two
              ",,,,8.8.8.8,,,,1,x", ",,,,192.168.1.7,,,,1,x", "8.8.8.8,,,,192.168.1.20,,,,1,x",
              "192.168.1.10,192.168.1.20,,,8.8.8.8,8.8.9.9,,,1,x",
              "192.168.1.10,192.168.1.10,,,8.8.8.8,8.8.8.8,,,1,x", ",,,,192.168.0.9,192.168.2.9,,,1,x",
              // protocols and ports
              lan + "2,x", lan + "3,x", lan + "4,x", lan + "6,x", "192.168.1.10,,1,65535,,,1,65535,3,x",
              "192.168.1.10,,80,80,,,80,80,2,x", "192.168.1.10,,80,,,,80,,1,x",
              // comments
              lan + "1,", lan + "1," + c32, lan + "1,b-c_d.e/f(g)h=i*j!k@l#m$n|o~p`q"});
  expect_all(checkIPFilterAllParam, -1,
             {"", lan + "1", std::string(40, ','), ",,,,,,,,1,x", lan + "00000000000000000006,x",
              std::string(4000, 'c') + ",,,,8.8.8.8,,,,1,x",
              // addresses
              "192.168.1,,,,,,,,1,x", "0xC0.168.1.10,,,,,,,,1,x", "192.168.1.0,,,,,,,,1,x",
              "192.168.1.10,192.168.1.255,,,,,,,1,x", ",,,,8.8.8.255,,,,1,x", ",,,,8.8.8.1,8.8.9.0,,,1,x",
              // ranges
              ",192.168.1.20,,,8.8.8.8,,,,1,x", "192.168.1.10,,,,,8.8.8.8,,,1,x",
              "192.168.1.20,192.168.1.10,,,,,,,1,x", ",,,,9.8.8.8,8.8.8.8,,,1,x",
              "192.168.1.10,192.168.2.1,,,,,,,1,x", ",,,,192.168.0.9,192.168.1.9,,,1,x",
              "192.168.1.10,,,,192.168.1.20,,,,1,x", "8.8.8.8,,,,9.9.9.9,,,,1,x",
              // protocols
              lan + ",x", lan + "0,x", lan + "5,x", lan + "7,x", lan + "1x,x", lan + "4294967297,x",
              "192.168.1.10,,,,,,80,,4,x", "192.168.1.10,,,,,,,80,6,x", "192.168.1.10,,80,,,,,,6,x",
              "192.168.1.10,,,80,,,,,4,x",
              // ports
              "192.168.1.10,,,,8.8.8.8,,,80,1,web", "192.168.1.10,,,80,,,,,1,x",
              "192.168.1.10,,81,80,,,,,1,x", "192.168.1.10,,,,,,81,80,1,x", "192.168.1.10,,0,,,,,,1,x",
              "192.168.1.10,,1,65536,,,,,1,x", "192.168.1.10,,,,,,65536,,1,x",
              "192.168.1.10,,,,,,4294967376,,1,x", "192.168.1.10,,80x,,,,,,1,x",
              "192.168.1.10,,,,,,80,9 0,1,x",
              // comments
              lan + "1," + c33, lan + "1," + std::string(64, 'c')});
  for (const char character : std::string("\"%&'+:;<>?\\^"))
    expect_all(checkIPFilterAllParam, -1, {(lan + "1,x").append(1, character).append("x")});
  EXPECT_EQ(checkIPFilterAllParam(nullptr), -1);
}

TEST_F(IpFilter, WithoutALanEveryAddressIsOnOneSide) {
  platform.nvram.clear();
  EXPECT_EQ(checkIPFilterAllParam("192.168.1.10,,,,8.8.8.8,,,,1,x"), -1);
  EXPECT_EQ(checkIPFilterAllParam("192.168.1.10,,,,,,,,1,x"), 0);
}

const char *const full_row = "192.168.1.10,192.168.1.20,1,2,8.8.8.8,8.8.8.9,3,4,1,note";

TEST_F(IpFilter, Ipv4RulesAreAskedInTheirOrderUntilOneRefuses) {
  EXPECT_EQ(checkIPFilterAllParam(full_row), 0);
  const Strings asked = platform.rules_asked;
  EXPECT_EQ(asked, (Strings{"17/4 8.8.8.8", "octet 0 8.8.8.8", "octet 255 8.8.8.8", "17/5 8.8.8.9",
                            "octet 0 8.8.8.9", "octet 255 8.8.8.9", "17/6 192.168.1.10",
                            "octet 0 192.168.1.10", "octet 255 192.168.1.10", "17/7 192.168.1.20",
                            "octet 0 192.168.1.20", "octet 255 192.168.1.20", "17/12 1", "17/8 3", "17/9 4",
                            "17/10 1", "17/11 2", "17/13 note"}));
  for (int item = 4; item <= 13; ++item) {
    platform.rules_asked.clear();
    platform.rule = [&](int, const std::string &, int which) { return which == item ? -3 : 2; };
    EXPECT_EQ(checkIPFilterAllParam(full_row), -1) << item;
    EXPECT_TRUE(platform.rules_asked.back().starts_with("17/" + std::to_string(item) + " "));
    EXPECT_TRUE(std::equal(platform.rules_asked.begin(), platform.rules_asked.end(), asked.begin()));
  }
  // Empty addresses are not judged, empty ports and comments are.
  platform.rule = nullptr;
  platform.rules_asked.clear();
  EXPECT_EQ(checkIPFilterAllParam("192.168.1.10,,,,,,,,4,"), 0);
  EXPECT_EQ(platform.rules_asked,
            (Strings{"17/6 192.168.1.10", "octet 0 192.168.1.10", "octet 255 192.168.1.10", "17/12 4",
                     "17/8 ", "17/9 ", "17/10 ", "17/11 ", "17/13 "}));
  platform.rules_asked.clear();
  EXPECT_EQ(checkIPFilterAllParam(("192.168.1.10,,,,,,,,1," + c33).c_str()), -1);
  EXPECT_EQ(platform.rules_asked.back(), "17/13 " + c33); // whole, longer than the record keeps
}

TEST_F(IpFilter, Ipv6Rows) {
  expect_all(
      checkIPV6FilterAllParam, 0,
      {"2001:db8::1,,,,::1,,,,1,", "2001:db8::1,2001:db8::2,1,2,::1,::2,3,4,3,note",
       "2001:db8::1/64,2001:db8::2/64,,,::1/0,::1/128,,,2,x",
       "2001:db8:1:2::3:4:5,,,,::1,,,,1,x", // 19 characters
       "0:0::1,::1,,,::2,::2,,,1,x",
       // 0 is a port, and an empty one counts as 0; protocols are judged by their number and are free to have ports
       "::1,,0,0,::1,,0,65535,1,x", "::1,,0,,::1,,0,,1,x", "::1,,,80,::1,,,80,1,x", "::1,,80,80,::1,,,,4,x",
       "::1,,80,80,::1,,,,6,x", "::1,,,,::1,,,,1x,x", "::1,,,,::1,,,,1,a;b?" + c33});
  expect_all(checkIPV6FilterAllParam, -1,
             {"", ",,,,,,,,,", "2001:db8::1,,,,::1,,,,1",
              // addresses
              ",,,,::1,,,,1,x", "2001:db8::1,,,,,,,,1,x", "2001:db8::1,,,,,::1,,,1,x",
              "2001:db8::g,,,,::1,,,,1,x", "::1,x,,,::1,,,,1,x", "::1,,,,::1,::x,,,1,x",
              "1.2.3.4,,,,::1,,,,1,x", "2001:db8:1:2::3:4:56,,,,::1,,,,1,x", "::2,::1,,,::1,,,,1,x",
              "::1,,,,::2,::1,,,1,x",
              // ports
              "::1,,80,,::1,,,,1,x", "::1,,,,::1,,80,,1,x", "::1,,81,80,::1,,,,1,x", "::1,,,,::1,,81,80,1,x",
              "::1,,,65536,::1,,,,1,x", "::1,,,,::1,,65536,65537,1,x", "::1,,,,::1,,,4294967376,1,x",
              "::1,,,x,::1,,,,1,x", "::1,,,-1,::1,,,,1,x",
              // protocols
              "::1,,,,::1,,,,,x", "::1,,,,::1,,,,0,x", "::1,,,,::1,,,,5,x", "::1,,,,::1,,,,7,x",
              "::1,,,,::1,,,,4294967297,x"});
  EXPECT_EQ(checkIPV6FilterAllParam(nullptr), -1);
}

TEST_F(IpFilter, Ipv6RulesAreAskedInTheirOrder) {
  EXPECT_EQ(checkIPV6FilterAllParam("::1,::2,1,2,::3,::4,3,4,1,note"), 0);
  EXPECT_EQ(platform.rules_asked,
            (Strings{"length 39 ::1", "ipv6 ::1", "length 39 ::2", "ipv6 ::2", "length 39 ::3", "ipv6 ::3",
                     "length 39 ::4", "ipv6 ::4", "range6 ::1 ::2", "range6 ::3 ::4", "17/13 note"}));
  platform.rules_asked.clear();
  EXPECT_EQ(checkIPV6FilterAllParam("::1,,,,::x,,,,9,!"), -1);
  EXPECT_EQ(platform.rules_asked, // an empty end is asked for its length alone
            (Strings{"length 39 ::1", "ipv6 ::1", "length 39 ", "length 39 ::x", "ipv6 ::x"}));
  for (const int code : {-1, 1}) { // exactly 0 is asked for
    platform.rule = [&](int, const std::string &, int) { return code; };
    EXPECT_EQ(checkIPV6FilterAllParam("::1,,,,::1,,,,1,"), -1) << code;
  }
}

TEST_F(IpFilter, RowsAreSplitIntoTheirRecord) {
  for (auto *split : {IPFiltersplitAllParam, IPV6FiltersplitAllParam}) {
    IPFilterRow fields;
    std::memset(&fields, '#', sizeof fields);
    EXPECT_EQ(split(("a,b,c,d,e,f,g,h," + c19).append(",").append(c33).c_str(), &fields), 0);
    const char *texts[] = {fields.srcIPBegin, fields.srcIPEnd, fields.srcPortBegin, fields.srcPortEnd,
                           fields.dstIPBegin, fields.dstIPEnd, fields.dstPortBegin, fields.dstPortEnd};
    for (int i = 0; i < 8; ++i)
      EXPECT_EQ(texts[i], std::string(1, static_cast<char>('a' + i)));
    EXPECT_EQ(fields.protocol, c19);
    EXPECT_EQ(fields.comment, c19); // its beginning
    EXPECT_EQ(split("a,b,c,d,e,f,g,h,i", &fields), -1);
    EXPECT_EQ(split(("a,b,c,d,e,f,g,h," + c20 + ",").c_str(), &fields), -1);
    EXPECT_EQ(split(nullptr, &fields), -1);
    EXPECT_EQ(split("a", nullptr), -1);
  }
}

} // namespace
