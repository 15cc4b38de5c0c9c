// Rules of the packet filters, the access control, the routes and the telephone line.
#include "expect_rule.hpp"
#include "host_test.hpp"

#include <string>

namespace {

constexpr int mac_filter = 13, url_filter = 15, access_control = 16, ip_filter = 17, ipv6_filter = 18,
              static_route = 19, sip = 26, telephone_line = 27, codec = 28, speed_dial = 29;

// Neither the numbers nor the addresses that a lenient reader would make of them.
const Values no_quads = {"192.168.1",  "192.168.1.256",      "0xc0a80101",   "192.168.1.010",
                         "3232235777", "192.168.1.1 ",       " 192.168.1.1", "192.168.1.1;",
                         "$(reboot)",  std::string(255, '1')};

TEST(FirewallRules, Switches) {
  const struct {
    int group;
    std::initializer_list<int> items;
  } switches[] = {{mac_filter, {1, 2, 3}},  {url_filter, {1, 2, 3}}, {ip_filter, {1, 2, 3}},
                  {ipv6_filter, {1, 2, 3}}, {static_route, {3}},     {sip, {0, 4}},
                  {telephone_line, {4}}};
  for (const auto &[group, items] : switches)
    for (const int item : items)
      judge(group, item, {"0", "1"}, {"2", "01", "1 ", "true"});
}

TEST(FirewallRules, FilterRows) {
  judge(mac_filter, 4, {"00:1A:2B:3C:4D:5E", "0b:22:33:44:55:66", "fF:FF:ff:Ff:00:00"},
        {" ", "00:1A:2B:3C:4D", "00:1A:2B:3C:4D:5", "00:1A:2B:3C:4D:5G", "00-1A-2B-3C-4D-5E", "001A2B3C4D5E",
         "00:1A:2B:3C:4D:5E:", ":0:1A:2B:3C:4D:5E", "00:1A:2B:3C:4D:5E\n", std::string(4000, ':')});
  const std::string longest(60, 'u'); // it fits a list's row
  judge(url_filter, 4, {"http://ads.example.com/x?a=b&c=%20", "casino", "$", longest},
        {" ", "a b", "a;b", "a,b", "a\nb", "caf\xc3\xa9", longest + "u"});
  for (const int item : {4, 5, 6, 7})
    judge(ip_filter, item, {"192.168.1.10", "8.8.8.8", "239.1.1.1"}, no_quads);
  for (const int item : {8, 9, 10, 11}) {
    expect(0, ip_filter, item, {"", "1", "65535"});
    expect(-2, ip_filter, item, {"0", "65536", " ", "80x", "+1", "99999999999999999999"});
  }
  judge(ip_filter, 12, {"1", "2", "3", "4", "6"}, {"0", "5", "7", "1x", "11"});
  const std::string comment(32, 'c');
  expect(0, ip_filter, 13, {"", "web", "no mail (25) `$#", comment});
  expect(-2, ip_filter, 13, {comment + "c", "a\nb", "\x7f"});
  for (const char forbidden : std::string("\"%&'+,:;<>?\\^"))
    expect(-2, ip_filter, 13, {std::string("no ") + forbidden});
}

class AccessControl : public HostTest {};

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
           {" ", "192.168.1", "192.168.1.010", "127.0.0.1", "0.0.0.0", "255.255.255.255", "router",
            "::", "::1", "ff02::1", "::ffff:192.168.1.20", "fe80::1%br0", "fe80::1/64", "2001:db8::g"});
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
    Values accepted, refused;
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
  judge(telephone_line, 0, {"InBand", "RFC2833", "SIPInfo"}, {"rfc2833", "InBand RFC2833", "0"});
  judge(telephone_line, 1, {"Disable", "PassThrough", "T38"}, {"T.38", "1"});
  for (const int item : {2, 3})
    judge(telephone_line, item, {"1024", "65535"}, {"1023", "65536", "x"});
  judge(telephone_line, 5, {"US", "DE", "ZA"}, {"us", "XX", "USA"});
  judge(telephone_line, 6, {"None", "Bellcore", "ETSI", "DTMF"}, {"FSK"});
  judge(telephone_line, 7, {"1", "20"}, {"0", "21"});
  judge(telephone_line, 8, {"5", "60"}, {"4", "61"});
  judge(codec, 0, {"G711U", "G729", "AMR-WB"}, {"g729", "G711", "G729,AMR"});
  judge(codec, 1, {"G711A"}, {"None"});
  expect(0, codec, 2, {"G722", ""});
  expect(-2, codec, 2, {"None", " "});
}

TEST(TelephoneRules, SpeedDial) {
  judge(speed_dial, 0, {"1", "9", "16"}, {"0", "17", "07", " ", "-1"});
  const std::string longest(27, '9'), note(32, 'n');
  judge(speed_dial, 1, {"+4930123456", "*31#030", longest}, {"030/123", "call me", "0;1", longest + "9"});
  expect(0, speed_dial, 2, {"", "mum + dad (home)", note});
  expect(-1, speed_dial, 2, {note + "n"});
  expect(-2, speed_dial, 2, {"a\nb", "caf\xc3\xa9"});
  for (const char forbidden : std::string(",;\"'`$\\&<>|"))
    expect(-2, speed_dial, 2, {std::string("a") + forbidden});
}

} // namespace
