#include "expect_rule.hpp"
#include "temp_device.hpp"

#include <string>

namespace {

constexpr int wifi = 1, lan = 3, operation_mode = 9, data_link = 30;

TEST(Rules, LanAddressesAndPool) {
  for (const int item : {9, 11, 12}) {
    expect(0, lan, item, {"192.168.1.1", "10.0.0.254", "172.16.0.1", "172.31.9.9"});
    expect(-1, lan, item, {""});
    expect(-2, lan, item, {"192.168.1.256", "999.0.0.1"});
    expect(-3, lan, item,
           {"192.168.1", "192.168.1.1.1", "192.168.1.1 ", " 192.168.1.1", "192.168.+1.1", "192.168.-1.1"});
    expect(-3, lan, item,
           {"192.168..1", "192.168.0001.1", "192.168.01.1", "192.168.1.1000", "router", "1.2.3.4/8"});
    expect(-4, lan, item, {"8.8.8.8", "172.32.0.1", "172.15.0.1", "192.169.0.1", "11.0.0.1"});
    expect(-5, lan, item, {"192.168.1.0", "10.1.1.255"});
    EXPECT_EQ(-1, tarn_check_param(lan, nullptr, item));
  }
}

TEST(Rules, NetmaskAndDns) {
  expect(0, lan, 10, {"255.255.255.0", "128.0.0.0", "255.255.255.254", "255.255.240.0"});
  expect(-1, lan, 10, {""});
  expect(-2, lan, 10, {"255.255.256.0"});
  expect(-3, lan, 10, {"255.255.255", "/24"});
  expect(-4, lan, 10, {"0.0.0.0", "255.255.255.255", "255.0.255.0", "0.0.0.255"});
  expect(0, lan, 27, {"0", "1"});
  expect(-1, lan, 27, {"", "2"});
  expect(0, lan, 28, {"8.8.8.8", "192.168.1.0"});
  expect(-1, lan, 28, {""});
  expect(-2, lan, 28, {"8.8.8.256"});
  expect(-3, lan, 28, {"dns"});
  expect(-5, lan, 28, {"0.1.2.3", "127.0.0.1", "224.0.0.1", "255.255.255.255"});
}

TEST(Rules, DhcpModeAndLeaseTime) {
  expect(0, lan, 8, {"0", "1", "2"});
  expect(-1, lan, 8, {"3", "", "01", "0 1", " "});
  expect(0, lan, 21, {"300", "172800"});
  expect(-1, lan, 21, {"299", "172801", "3600s", "-3600", "+3600", " 3600", "99999999999999999999"});
  expect(-2, lan, 21, {""});
}

TEST(Rules, Wifi) {
  const std::string key(64, 'a');
  expect(0, wifi, 2, {"BONLY", "BGN"});
  expect(-1, wifi, 2, {"", "bgn", "B", "BG GN"});
  expect(0, wifi, 3, {"0", "13"});
  expect(-1, wifi, 3, {"", "14"});
  expect(0, wifi, 4, {"my net", key.substr(32)});
  expect(-1, wifi, 4, {"", key.substr(31), "a\nb", "caf\xe9"});
  expect(0, wifi, 7, {"12345678", key.substr(1), key});
  expect(-1, wifi, 7, {"1234567", key + "a", std::string(64, 'x'), "1234567\t"});
  expect(0, wifi, 17, {"0", "12"});
  expect(-1, wifi, 17, {"13", "1.5", ""});
  for (const int item : {1, 19, 24, 25}) {
    expect(0, wifi, item, {"0", "1"});
    expect(-1, wifi, item, {"2", "on", ""});
  }
}

TEST(Rules, OperationModeAndMtu) {
  const std::string label(63, 'a');
  expect(0, operation_mode, 0, {"0", "3"});
  expect(-1, operation_mode, 0, {"4", ""});
  expect(0, operation_mode, 5, {"lac_1.example-net", label});
  expect(-1, operation_mode, 5, {"", label + "a", "a b"});
  expect(0, operation_mode, 6, {"10.1.1.1", "lns.example.net", label + ".net"});
  expect(-1, operation_mode, 6, {""});
  expect(-2, operation_mode, 6, {"10.1.1.256"});
  expect(-3, operation_mode, 6,
         {"10.1.1", label + "a.net", "-lns.net", "lns..net", "lns.net.", "lns;reboot"});
  expect(-5, operation_mode, 6, {"127.0.0.1"});
  expect(0, operation_mode, 7, {"user@realm"});
  expect(-1, operation_mode, 8, {"", "\t", label + "a"});
  expect(-5, operation_mode, 13, {"239.0.0.1"});
  expect(0, data_link, 1, {"576", "1500"});
  expect(-1, data_link, 1, {"575", "1501", ""});
}

TEST(Rules, UnknownPairsAreRefusedAloud) {
  const struct { int group, item; } unknown[] = {{lan, 77}, {66, 9}, {-1, -1}};
  for (const auto &pair : unknown) {
    const std::string console =
        console_of([&] { EXPECT_GT(0, tarn_check_param(pair.group, "1", pair.item)); });
    EXPECT_NE(console.find("item " + std::to_string(pair.item)), std::string::npos) << console;
    EXPECT_NE(console.find("group " + std::to_string(pair.group)), std::string::npos) << console;
  }
}

} // namespace
