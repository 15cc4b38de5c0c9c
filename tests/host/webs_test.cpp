#include "host_test.hpp"
#include "platform/nvram.h"
#include "platform/webs.h"

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

TEST(Webs, Addresses) {
  EXPECT_EQ(0xC0A80102U, websIP2Num("192.168.1.2"));
  for (const char *none : {"", "192.168.1", "192.168.1.256", "192.168.1.2/24", "x"})
    EXPECT_EQ(0U, websIP2Num(none)) << none;
  EXPECT_NE(0, webscheckSameSubnet("192.168.1.2", "255.255.255.0", "192.168.1.250"));
  EXPECT_EQ(0, webscheckSameSubnet("192.168.1.2", "255.255.255.0", "192.168.2.2"));
  EXPECT_NE(0, webscheckSameSubnet("192.168.1.2", "255.255.252.0", "192.168.2.2"));
  EXPECT_EQ(0, webscheckSameSubnet("", "255.255.255.0", ""));
  EXPECT_NE(0, webscheckIpStartEnd("192.168.1.2", "192.168.1.2"));
  EXPECT_NE(0, webscheckIpStartEnd("10.0.0.1", "192.168.1.2")) << "compared without a sign";
  EXPECT_EQ(0, webscheckIpStartEnd("192.168.1.3", "192.168.1.2"));
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
    for (const char *rate : {"13", "-1", "", "x", "5x"})
      EXPECT_GT(0, CheckRFModeAndRate(radio.mode, rate)) << radio.mode << rate;
  }
}

TEST(Webs, ScanModeWithDuplex) {
  for (const char *duplex : {"FDD", "TDD"}) {
    for (const char *code : {"1", "2", "3", "4"})
      EXPECT_EQ(0, webscheckScanMode(code, duplex)) << code << duplex;
    for (const char *code : {"", "0", "5", "11", "x"})
      EXPECT_EQ(-1, webscheckScanMode(code, duplex)) << code << duplex;
  }
  for (const char *duplex : {"", "fdd", "FDDX"})
    EXPECT_EQ(-2, webscheckScanMode("1", duplex)) << duplex;
}

class DmzHost : public HostTest {};

TEST_F(DmzHost, IsAClientOfTheLan) {
  EXPECT_GT(0, checkDMZParam("192.168.1.50")) << "without a LAN";
  nvram_bufset(0, "lan_ip", "192.168.1.1");
  nvram_bufset(0, "lan_netmask", "255.255.254.0");
  for (const char *host : {"192.168.1.50", "192.168.0.255", "192.168.0.1"})
    EXPECT_EQ(0, checkDMZParam(host)) << host;
  for (const char *host : {"192.168.1.1", "192.168.0.0", "192.168.1.255", "192.168.2.1", "", "192.168.1"})
    EXPECT_GT(0, checkDMZParam(host)) << host;
  nvram_bufset(0, "lan_ip", "8.8.8.1");
  EXPECT_GT(0, checkDMZParam("8.8.8.8")) << "of no private network";
}

class OperationMode : public HostTest {};

TEST_F(OperationMode, IsReadFromTheStore) {
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

TEST_F(OperationMode, DecidesWhichKeysAreWritable) {
  const struct {
    const char *key;
    int router, over_l2tp, over_gre;
  } keys[] = {{"oper_mode", 1, 1, 1},      {"lan_ip", 1, 1, 1},           {"vpn_type", 0, 1, 1},
              {"vpn_nat_enable", 0, 1, 1}, {"l3vpn_default_if", 0, 1, 1}, {"bcp_enable", 0, 1, 0},
              {"l2tp_lns_ip", 0, 1, 0},    {"gre_type", 0, 0, 1},         {"gre_dest_ip", 0, 0, 1}};
  for (const auto &row : keys) {
    nvram_bufset(0, "oper_mode", "1");
    EXPECT_EQ(row.router, OperMode_checkKeyWritableFromNvram(row.key)) << row.key;
    nvram_bufset(0, "oper_mode", "2");
    nvram_bufset(0, "vpn_type", "0");
    EXPECT_EQ(row.over_l2tp, OperMode_checkKeyWritableFromNvram(row.key)) << row.key;
    nvram_bufset(0, "vpn_type", "1");
    EXPECT_EQ(row.over_gre, OperMode_checkKeyWritableFromNvram(row.key)) << row.key;
  }
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
