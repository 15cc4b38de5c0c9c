#include "host_test.hpp"
#include "platform/host/console_admin.hpp"
#include "platform/host/rule_admin.hpp"
#include "platform/nvram.h"
#include "platform/rules.h"
#include "support/match.hpp"

#include <fstream>
#include <iomanip>
#include <map>
#include <sstream>
#include <string>
#include <vector>

using namespace kova::host;

namespace {

int judge(kova_rule rule, const std::string &value) {
  return tarn_check_param(kova_rule_group(rule), value.c_str(), kova_rule_item(rule));
}

void expect(int code, kova_rule rule, std::initializer_list<std::string> values) {
  for (const std::string &value : values)
    EXPECT_EQ(code, judge(rule, value))
        << kova_rule_group(rule) << '/' << kova_rule_item(rule) << " \"" << value << '"';
}

// Each line of rules.txt: a rule by its name, what it answers, and the values about which it does.
TEST(Rules, AnswerAsTheySay) {
  std::map<std::string, int> names;
  std::ifstream header(KOVA_SOURCE_DIR "/platform/rules.h"), file(KOVA_SOURCE_DIR "/tests/host/rules.txt");
  int values = 0;
  for (std::string line; std::getline(header, line);)
    if (const auto parts = kova::test::matched(line, R"( *RULE_(\w+) *= *(\d+) << 8 \| *(\d+),)");
        !parts.empty())
      names[parts[1]] = std::stoi(parts[2]) << 8 | std::stoi(parts[3]);
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string name, value;
    int answer = 0;
    if (!(words >> name >> answer) || name == "#") continue;
    ASSERT_TRUE(names.contains(name)) << name;
    for (; words >> std::quoted(value); ++values)
      expect(answer, static_cast<kova_rule>(names.at(name)), {value});
  }
  expect(-2, RULE_MAC_FILTER_ADDRESS, {"00:1A:2B:3C:4D:5E\n"});
  expect(-2, RULE_ACS_URL, {"http://acs/\n"});
  EXPECT_GT(values, 200);
  EXPECT_EQ(-1, tarn_check_param(3, nullptr, 9));
}

TEST(Rules, Texts) {
  const std::string letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ", digits = "0123456789";
  const std::string marks = " !\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~", all = letters + digits + marks;
  const auto without = [&all](std::string_view some) {
    std::string rest = all;
    std::erase_if(rest, [some](char c) { return some.find(c) != some.npos; });
    return rest;
  };
  const struct {
    kova_rule rule;
    std::string allowed;
    int other;
  } classes[] = {{RULE_WIFI_SSID, all, -1},
                 {RULE_ACS_USER, all, -2},
                 {RULE_SIP_USER, without(" "), -3},
                 {RULE_URL_FILTER_URL, without(" ,;"), -2},
                 {RULE_IP_FILTER_COMMENT, without("\"%&'+,:;<>?\\^"), -2},
                 {RULE_SPEED_DIAL_NOTE, without(",;\"'`$\\&<>|"), -2},
                 {RULE_WAN_L2TP_HOST_NAME, letters + digits + "._-", -1},
                 {RULE_SPEED_DIAL_REAL_NUMBER, digits + "*#+", -2},
                 {RULE_SIP_NUMBER, letters + digits + "*#+-_.!~", -3}};
  for (const auto &[rule, allowed, other] : classes)
    for (int c = 1; c < 256; ++c) {
      const bool belongs = allowed.find(static_cast<char>(c)) != std::string::npos;
      expect(belongs ? 0 : other, rule, {std::string(1, static_cast<char>(c))});
    }
  expect(-1, RULE_SIP_PASSWORD, {""});
  expect(-2, RULE_SIP_PASSWORD, {std::string(65, '1'), std::string(4000, '\n')}); // too long
  expect(-1, RULE_SPEED_DIAL_NOTE, {std::string(33, '1')});
  expect(0, RULE_SPEED_DIAL_NOTE, {""});
  expect(-1, RULE_SNMP_USER, {"", std::string(33, 'm')});
  expect(-2, RULE_SNMP_USER, {"a b", "a;b"});
  expect(-1, RULE_WIFI_PASS_PHRASE, {"1234567", std::string(64, 'x'), std::string(65, 'a'), "1234567\t"});
  expect(0, RULE_WIFI_PASS_PHRASE, {"1234567 ", std::string(63, 'x'), std::string(64, 'F')});
}

class AccessControl : public HostTest {};

TEST_F(AccessControl, TellsTheLanFromTheWorld) {
  expect(0, RULE_ACL_START, {"192.168.1.20"}); // before there is a LAN
  expect(-1, RULE_ACL_START, {""});
  nvram_bufset(0, "lan_ip", "192.168.1.1");
  nvram_bufset(0, "lan_netmask", "255.255.254.0");
  expect(-4, RULE_ACL_START,
         {"192.168.1.20", "192.168.0.255", "192.168.1.1", "fe80::1", "FEBF::1", "fc00::1", "fdff::"});
  expect(0, RULE_ACL_START,
         {"192.168.2.1", "8.8.8.8", "2001:db8::1", "fec0::1", "fe00::1", "::2", "64:ff9b::192.0.2.1"});
  expect(-2, RULE_ACL_START, {"192.168.1.256"});
  expect(-3, RULE_ACL_START,
         {" ", "192.168.1", "192.168.1.010", "127.0.0.1", "0.0.0.0", "255.255.255.255", "router", "::", "::1",
          "ff02::1", "::ffff:192.168.1.20", "fe80::1%br0", "fe80::1/64", "2001:db8::g"});
  nvram_bufset(0, "lan_netmask", "garbage");
  expect(0, RULE_ACL_START, {"192.168.1.20"});
}

TEST(Rules, DescribeThemselvesToPeople) {
  const auto text = [](kova_rule rule) {
    return describe_rule(kova_rule_group(rule), kova_rule_item(rule)).value().text;
  };
  EXPECT_EQ(text(RULE_WIFI_ENABLE), "0 (off) or 1 (on)");
  EXPECT_EQ(text(RULE_LAN_DHCP_MODE), "one of 0 (off), 1 (server), 2 (relay)");
  EXPECT_EQ(text(RULE_WIFI_MODE), "one of BONLY, GONLY, NONLY, BG, GN, BGN");
  EXPECT_EQ(text(RULE_WIFI_CHANNEL), "a number from 0 to 13 (0: automatic)");
  EXPECT_EQ(text(RULE_IP_FILTER_DST_PORT_END), "a number from 1 to 65535");
  EXPECT_EQ(text(RULE_WIFI_PASS_PHRASE), "8 to 63 printable characters, or 64 hexadecimal digits");
  EXPECT_EQ(text(RULE_WAN_L2TP_SERVER), "an IPv4 address or a host name");
  EXPECT_EQ(text(RULE_LAN_LEASE_TIME), "a number of seconds from 300 to 172800");
  EXPECT_EQ(describe_rule(3, 21)->unit, "seconds");
  EXPECT_EQ(describe_rule(1, 2)->words.at(3).second, "802.11b and g");
}

TEST(Rules, RefusalsAreKeptUntilTaken) {
  take_refusals();
  judge(RULE_WIFI_CHANNEL, "13");
  judge(RULE_WIFI_CHANNEL, "14");
  const std::string console = console_of([] { EXPECT_GT(0, tarn_check_param(66, "x", 77)); });
  EXPECT_NE(console.find("item 77 of group 66"), std::string::npos) << console;
  EXPECT_FALSE(describe_rule(66, 77));
  const auto refusals = take_refusals();
  ASSERT_EQ(refusals.size(), 2U);
  EXPECT_TRUE(refusals[0].group == 1 && refusals[0].item == 3 && refusals[0].value == "14" &&
              refusals[0].code == -1);
  EXPECT_TRUE(refusals[1].group == 66 && refusals[1].item == 77);
  EXPECT_TRUE(take_refusals().empty());
  for (int i = 0; i < 1000; ++i)
    judge(RULE_WIFI_CHANNEL, "x" + std::to_string(i));
  const auto last = take_refusals();
  EXPECT_TRUE(!last.empty() && last.size() < 1000 && last.back().value == "x999");
}

TEST(Console, LinesAreKeptAndCanBeSilenced) {
  take_console_lines();
  EXPECT_EQ("a 1\nb\n", console_of([] {
              tarn_log_console("a %d", 1);
              tarn_log_console("b\n");
              console_quiet(true);
              tarn_log_console("c");
              console_quiet(false);
            }));
  EXPECT_EQ(take_console_lines(), (std::vector<std::string>{"a 1", "b", "c"}));
  EXPECT_TRUE(take_console_lines().empty());
}

} // namespace
