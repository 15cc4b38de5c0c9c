// Rules of the packet filters, the access control, the routes and the telephone line.
#include "expect_rule.hpp"
#include "temp_device.hpp"

#include <string>

namespace {

constexpr int mac_filter = 13, url_filter = 15, access_control = 16, ip_filter = 17, ipv6_filter = 18,
              static_route = 19, sip = 26, telephone_line = 27, codec = 28, speed_dial = 29;

// Neither the numbers nor the addresses that a lenient reader would make of them.
const std::initializer_list<std::string> no_quads = {
    "192.168.1",    "192.168.1.256", "0xc0a80101",         "192.168.1.010", "3232235777",
    "192.168.1.1 ", " 192.168.1.1",  "192.168.1.1;",       "192.168.1.1\n", "192.168.1.1,1",
    "$(reboot)",    "`reboot`",      std::string(255, '1')};

TEST(FirewallRules, Switches) {
  const struct {
    int group;
    std::initializer_list<int> items;
  } switches[] = {{mac_filter, {1, 2, 3}},  {url_filter, {1, 2, 3}}, {ip_filter, {1, 2, 3}},
                  {ipv6_filter, {1, 2, 3}}, {static_route, {3}},     {sip, {0, 4}},
                  {telephone_line, {4}}};
  for (const auto &[group, items] : switches)
    for (const int item : items) {
      expect(0, group, item, {"0", "1"});
      expect(-1, group, item, {""});
      expect(-2, group, item, {"2", "-1", "01", "1 ", "0 1", "true"});
    }
}

TEST(FirewallRules, MacAddress) {
  expect(0, mac_filter, 4, {"00:1A:2B:3C:4D:5E", "0b:22:33:44:55:66", "fF:FF:ff:Ff:00:00"});
  expect(-1, mac_filter, 4, {""});
  expect(-2, mac_filter, 4,
         {" ", "00:1A:2B:3C:4D", "00:1A:2B:3C:4D:5", "00:1A:2B:3C:4D:5G", "00-1A-2B-3C-4D-5E", "001A2B3C4D5E",
          "00:1A:2B:3C:4D:5E:", ":0:1A:2B:3C:4D:5E", "00:1A:2B:3C:4D;5E", "00:1A:2B:3C:4D:5E\n",
          std::string(4000, ':')});
}

TEST(FirewallRules, UrlFitsAListRow) {
  const std::string longest(60, 'u');
  expect(0, url_filter, 4, {"http://ads.example.com/x?a=b&c=%20", "casino", "$", longest});
  expect(-1, url_filter, 4, {""});
  expect(-2, url_filter, 4,
         {" ", "a b", "a;b", "a,b", "a\tb", "a\nb", "caf\xc3\xa9", longest + "u", std::string(4000, 'u')});
}

TEST(FirewallRules, IpFilterRow) {
  for (const int item : {4, 5, 6, 7}) {
    expect(0, ip_filter, item, {"192.168.1.10", "8.8.8.8", "239.1.1.1"});
    expect(-1, ip_filter, item, {""});
    expect(-2, ip_filter, item, no_quads);
  }
  for (const int item : {8, 9, 10, 11}) {
    expect(0, ip_filter, item, {"", "1", "65535"});
    expect(-2, ip_filter, item, {"0", "65536", " ", "80x", "-1", "+1", "99999999999999999999"});
  }
  expect(0, ip_filter, 12, {"1", "2", "3", "4", "6"});
  expect(-1, ip_filter, 12, {""});
  expect(-2, ip_filter, 12, {"0", "5", "7", "1x", "11", "1 2"});
  const std::string longest(32, 'c');
  expect(0, ip_filter, 13, {"", "web", "no mail (25) `$#", longest});
  expect(-2, ip_filter, 13, {longest + "c", "a\nb", "\x7f"});
  for (const char forbidden : std::string("\"%&'+,:;<>?\\^"))
    expect(-2, ip_filter, 13, {std::string("no ") + forbidden});
}

class AccessControl : public TempDevice {};

TEST_F(AccessControl, TellsTheLanFromTheWorld) {
  for (const int item : {8, 9}) {
    expect(0, access_control, item, {"192.168.1.20"}); // before there is a LAN
    expect(-1, access_control, item, {""});
  }
  nvram_bufset(0, "lan_ip", "192.168.1.1");
  nvram_bufset(0, "lan_netmask", "255.255.254.0");
  for (const int item : {8, 9}) {
    expect(-4, access_control, item, {"192.168.1.20", "192.168.0.255", "192.168.1.1"});
    expect(0, access_control, item, {"192.168.2.1", "8.8.8.8"});
    expect(-4, access_control, item, {"fe80::1", "FEBF::1", "fc00::1", "fdff::"});
    expect(0, access_control, item, {"2001:db8::1", "fec0::1", "fe00::1", "::2", "64:ff9b::192.0.2.1"});
    expect(-2, access_control, item, {"192.168.1.256"});
    expect(-3, access_control, item,
           {" ", "192.168.1", "192.168.1.010", "127.0.0.1", "0.0.0.0", "255.255.255.255", "router"});
    expect(-3, access_control, item,
           {"::", "::1", "ff02::1", "::ffff:192.168.1.20", "fe80::1%br0", "fe80::1/64", "[fe80::1]",
            ":::", "fe80:1", "1:2:3:4:5:6:7:8:9", "2001:db8::1 ", "2001:db8::g"});
  }
  nvram_bufset(0, "lan_netmask", "garbage");
  expect(0, access_control, 8, {"192.168.1.20"});
}

TEST(FirewallRules, Route) {
  expect(0, static_route, 0, {"192.168.1.254"});
  expect(0, static_route, 1, {"10.0.0.0", "0.0.0.0", "192.0.2.7"});
  expect(0, static_route, 2, {"255.0.0.0", "0.0.0.0", "255.255.255.255"});
  for (const int item : {0, 1, 2})
    for (const std::string &value : no_quads)
      EXPECT_GT(0, tarn_check_param(static_route, value.c_str(), item)) << item << value;
  for (const int item : {0, 1, 2, 3})
    expect(-1, static_route, item, {""});
  expect(-5, static_route, 0, {"0.0.0.0", "127.0.0.1", "224.0.0.1"});
  expect(-5, static_route, 1, {"127.0.0.0", "224.0.0.0", "255.255.255.255"});
  expect(-4, static_route, 2, {"255.0.255.0", "0.0.0.255"});
}

TEST(TelephoneRules, SipAccountAndServers) {
  const std::string longest(64, '1');
  const struct {
    int item;
    std::initializer_list<std::string> accepted, refused;
  } texts[] = {
      {1, {"1001", "+4930123456", "*21#", "alice.smith"}, {"a b", "a;b", "a,b", "a@b", "a\"b", "`a`"}},
      {2, {"user@realm", "a;b"}, {"a b", "a\n"}},
      {3, {"p $(w) `\"d", " "}, {"a\n", "caf\xc3\xa9"}}};
  for (const auto &[item, accepted, refused] : texts) {
    expect(0, sip, item, accepted);
    expect(0, sip, item, {longest});
    expect(-1, sip, item, {""});
    expect(-2, sip, item, {longest + "1", std::string(4000, '"')});
    expect(-3, sip, item, refused);
  }
  const std::string name = longest.substr(0, 60) + ".net";
  for (const int item : {5, 7, 9, 11}) {
    expect(0, sip, item, {"sip.example.com", "ims", "192.0.2.1", "2001:db8::1", name});
    expect(-1, sip, item, {""});
    expect(-2, sip, item, {"1" + name});
    expect(-3, sip, item,
           {"sip example", "sip:example.com", "sip.example.com;lr", "-sip", "192.0.2.256", "127.0.0.1", "::1",
            "[2001:db8::1]", "fe80::1%br0", "$(reboot)"});
  }
  for (const int item : {6, 8, 10}) {
    expect(0, sip, item, {"1", "5060", "65535"});
    expect(-1, sip, item, {""});
    expect(-2, sip, item, {"123456", "005060"});
    expect(-3, sip, item, {"0", "65536", "sip", "-1", " "});
  }
}

TEST(TelephoneRules, LineAndCodecs) {
  const struct {
    int group, item;
    std::initializer_list<std::string> accepted, refused;
  } rules[] = {{telephone_line, 0, {"InBand", "RFC2833", "SIPInfo"}, {"rfc2833", "InBand RFC2833", "0"}},
               {telephone_line, 1, {"Disable", "PassThrough", "T38"}, {"T.38", "1"}},
               {telephone_line, 2, {"1024", "65535"}, {"1023", "65536", "x"}},
               {telephone_line, 3, {"1024", "65535"}, {"1023", "65536", "x"}},
               {telephone_line, 5, {"US", "DE", "ZA"}, {"us", "XX", "USA"}},
               {telephone_line, 6, {"None", "Bellcore", "ETSI", "DTMF"}, {"FSK"}},
               {telephone_line, 7, {"1", "20"}, {"0", "21"}},
               {telephone_line, 8, {"5", "60"}, {"4", "61"}},
               {codec, 0, {"G711U", "G729", "AMR-WB"}, {"g729", "G711", "G729,AMR"}},
               {codec, 1, {"G711A"}, {"None"}},
               {codec, 2, {"G722"}, {"None", " "}}};
  for (const auto &[group, item, accepted, refused] : rules) {
    const bool may_be_empty = group == codec && item == 2;
    expect(0, group, item, accepted);
    expect(may_be_empty ? 0 : -1, group, item, {""});
    expect(-2, group, item, refused);
  }
}

TEST(TelephoneRules, SpeedDial) {
  expect(0, speed_dial, 0, {"1", "9", "16"});
  expect(-1, speed_dial, 0, {""});
  expect(-2, speed_dial, 0, {"0", "17", "07", " ", "1 2", "-1"});
  const std::string longest(27, '9');
  expect(0, speed_dial, 1, {"+4930123456", "*31#030", longest});
  expect(-1, speed_dial, 1, {""});
  expect(-2, speed_dial, 1, {"030/123", "call me", "0;1", longest + "9"});
  const std::string note(32, 'n');
  expect(0, speed_dial, 2, {"", "mum + dad (home)", note});
  expect(-1, speed_dial, 2, {note + "n", std::string(33, ';')});
  expect(-2, speed_dial, 2, {"a\nb", "caf\xc3\xa9"});
  for (const char forbidden : std::string(",;\"'`$\\&<>|"))
    expect(-2, speed_dial, 2, {std::string("a") + forbidden});
}

} // namespace
