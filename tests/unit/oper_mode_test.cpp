// The operation mode and the VPN.
#include "fake/fake.hpp"

#include <kova/transaction.h>
#include <kova/wan.h>

#include <sstream>

using fake::effect;
using fake::get;
using fake::platform;
using fake::Strings;

namespace {

class Mode : public fake::Test {};

// clang-format off
const struct Setting {
  std::string key;
  int item; // of the rule
  kova_getter *get;
  kova_setter *set;
  kova_getter *older_get;
  kova_setter *older_set;
  kova_checker *check = nullptr;
} settings[] = {
    {"oper_mode",          0,  getTR069WanSettingOperMode,            setTR069WanSettingOperMode,            kovaGetOperMode,        kovasetOperMode,        chkTR069WanSettingOperMode},
    {"vpn_type",           1,  getTR069WanSettingVPNType,             setTR069WanSettingVPNType,             kovaGetVpnType,         kovasetVpnType,         chkTR069WanSettingVPNType},
    {"vpn_nat_enable",     2,  getTR069WanSettingVPNNatEnable,        setTR069WanSettingVPNNatEnable,        kovaGetVpnNatEnable,    kovasetVpnNatEnable},
    {"l3vpn_default_if",   3,  nullptr,                               nullptr,                               kovaGetL3vpnDefaultIf,  kovasetL3vpnDefaultIf},
    {"bcp_enable",         4,  getTR069WanSettingBCPEnable,           setTR069WanSettingBCPEnable,           kovaGetBcpEnable,       kovasetBcpEnable,       chkTR069WanSettingBCPEnable},
    {"l2tp_host_name",     5,  getTR069WanSettingL2TPHostName,        setTR069WanSettingL2TPHostName,        kovaGetL2tpHostname,    kovasetL2tpHostname},
    {"l2tp_lns_ip",        6,  getTR069WanSettingL2TPServerIPAddress, setTR069WanSettingL2TPServerIPAddress, kovaGetL2tpLnsIp,       kovasetL2tpLnsIp},
    {"l2tp_ppp_user",      7,  getTR069WanSettingL2TPUserName,        setTR069WanSettingL2TPUserName,        kovaGetL2tpPppUser,     kovasetL2tpPppUser},
    {"l2tp_ppp_pass",      8,  getTR069WanSettingL2TPPassword,        setTR069WanSettingL2TPPassword,        kovaGetL2tpPppPass,     kovasetL2tpPppPass},
    {"gre_type",           10, getTR069WanSettingGREType,             setTR069WanSettingGREType,             kovaGetGreType,         kovasetGreType,         chkTR069WanSettingGREType},
    {"gre_tunnel_ip",      11, getTR069WanSettingGREIPAddress,        setTR069WanSettingGREIPAddress,        kovaGetGreTunnelIp,     kovasetGreTunnelIp},
    {"gre_tunnel_ip_mask", 12, getTR069WanSettingGRESubnetMask,       setTR069WanSettingGRESubnetMask,       kovaGetGreTunnelIpMask, kovasetGreTunnelIpMask},
    {"gre_dest_ip",        13, getTR069WanSettingGREDestIPAddress,    setTR069WanSettingGREDestIPAddress,    kovaGetGreDestIp,       kovasetGreDestIp}};
// clang-format on

std::string rule_of(const Setting &setting) {
  return "9/" + std::to_string(setting.item) + " ";
}

TEST_F(Mode, CheckersJudgeAndSettersStoreInBothSectionsAndRestartTheNetwork) {
  for (const Setting &setting : settings) {
    if (setting.get == nullptr) continue;
    SCOPED_TRACE(setting.key);
    platform = {};
    fake::expect_no_buffer_refused(setting.get);
    EXPECT_EQ(setting.set(nullptr), -1);
    EXPECT_EQ(setting.set(""), 0);
    platform.rules_asked.clear();
    const Strings done = {"nvram 0 " + setting.key + "=1", "nvram 9 " + setting.key + "=1",
                          "request 0x10000023"};
    const bool judged = setting.key != "oper_mode"; // which the batch has judged
    EXPECT_EQ(effect(setting.set, "1"), done);
    EXPECT_EQ(platform.rules_asked, judged ? Strings{rule_of(setting) + "1"} : Strings{});
    EXPECT_EQ(get(setting.get), "1");
    if (setting.check != nullptr) {
      for (const char *none : {"", static_cast<const char *>(nullptr)})
        EXPECT_EQ(setting.check(none, "1") + setting.check("Name", none), -2);
      EXPECT_EQ(setting.check("Name", "2"), 0);
      EXPECT_EQ(platform.rules_asked.back(), rule_of(setting) + "2");
    }
    fake::refuse_all();
    EXPECT_EQ(effect(setting.set, "1", judged ? -1 : 0), judged ? Strings{} : done);
    EXPECT_EQ(setting.check != nullptr ? setting.check("Name", "2") : -1, -1);
  }
}

TEST_F(Mode, SingleSettingsMustBeWritableAndReactToNothing) {
  for (const Setting &setting : settings) {
    SCOPED_TRACE(setting.key);
    platform = {};
    platform.preset(0, "vpn_type=1 gre_type=0");
    EXPECT_EQ(setting.older_set(nullptr), -1);
    EXPECT_EQ(effect(setting.older_set, "0"), Strings{"nvram 0 " + setting.key + "=0"});
    EXPECT_EQ(platform.rules_asked, (Strings{rule_of(setting) + "0", "writable " + setting.key}));
    EXPECT_EQ(get(setting.older_get), setting.key == "l2tp_ppp_pass" ? " " : "0");
    for (const int writable : {0, 2}) {
      platform.writable = writable;
      EXPECT_EQ(effect(setting.older_set, "0", -1), Strings{});
    }
    platform.writable = 1;
    fake::refuse_all();
    EXPECT_EQ(effect(setting.older_set, "0", -1), Strings{});
  }
}

TEST_F(Mode, SomeSettingsNeedALayer3Vpn) {
  const auto expect = [](const char *stored, int layer_3) {
    platform = {};
    platform.preset(0, stored);
    EXPECT_EQ(tarnIsL3Vpn(), layer_3) << stored;
    for (kova_setter *set : {kovasetVpnNatEnable, kovasetL3vpnDefaultIf})
      EXPECT_EQ(set("1"), layer_3 - 1) << stored;
    EXPECT_EQ(platform.done.size(), layer_3 == 1 ? 2U : 0U);
  };
  for (const char *stored : {"vpn_type=0 bcp_enable=0 gre_type=1", "vpn_type=1 gre_type=0 bcp_enable=1"})
    expect(stored, 1);
  for (const char *stored : {"", "vpn_type=0", "vpn_type=1", "vpn_type=0 bcp_enable=1 gre_type=0",
                             "vpn_type=1 gre_type=1 bcp_enable=0", "vpn_type=00 bcp_enable=0",
                             "vpn_type=2 bcp_enable=0 gre_type=0"})
    expect(stored, 0);
}

TEST_F(Mode, StoredSettingsMustBeCompleteForTheirMode) {
  // The settings that a mode needs, in the order in which they are asked for.
  const std::string l2tp = "oper_mode=2 vpn_type=0 l2tp_host_name=h ", gre = "oper_mode=2 vpn_type=1 ",
                    layer_3 = "vpn_nat_enable=1 l3vpn_default_if=i ",
                    peer = "l2tp_lns_ip=s l2tp_ppp_user=u l2tp_ppp_pass=p";
  for (const std::string &stored :
       {std::string("oper_mode=0"), std::string("oper_mode=1"), std::string("oper_mode=3"),
        l2tp + "bcp_enable=0 " + layer_3 + peer, l2tp + "bcp_enable=1 " + peer,
        gre + "gre_type=0 " + layer_3 + "gre_tunnel_ip=a gre_tunnel_ip_mask=m gre_dest_ip=d",
        gre + "gre_type=1 gre_dest_ip=d"}) {
    SCOPED_TRACE(stored);
    platform = {};
    platform.preset(0, stored);
    const fake::Store all = platform.nvram;
    EXPECT_EQ(kovaTr069CheckOperModeNvram(), 0);
    Strings keys; // and no other is looked at
    std::istringstream words(stored);
    for (std::string word; words >> word;)
      keys.push_back("0 " + word.substr(0, word.find('=')));
    EXPECT_EQ(platform.keys_read, keys);
    EXPECT_EQ(kovasetOperModeApply("1"), 0);
    for (const auto &[key, value] : all) { // each is needed, and must pass its rule
      platform.nvram.erase(key);
      EXPECT_EQ(kovaTr069CheckOperModeNvram(), -1) << key.second;
      platform.nvram[key] = "";
      EXPECT_EQ(kovasetOperModeApply("1"), -1) << key.second;
      platform.nvram = all;
      for (const Setting &setting : settings)
        if (setting.key == key.second)
          platform.rule = [&](int, const std::string &, int item) { return item == setting.item ? -1 : 0; };
      EXPECT_EQ(kovaTr069CheckOperModeNvram(), -1) << key.second;
      platform.rule = nullptr;
    }
    EXPECT_TRUE(platform.done.empty());
  }
}

TEST_F(Mode, ApplyOnlyChecks) {
  platform.preset(0, "oper_mode=2 vpn_type=2 gre_type=1 gre_dest_ip=d");
  for (const char *refused : {"1", static_cast<const char *>(nullptr)})
    EXPECT_EQ(effect(kovasetOperModeApply, refused, -1), Strings{});
  for (const char *other : {"0", "11", ""})
    EXPECT_EQ(effect(kovasetOperModeApply, other), Strings{});
}

} // namespace
