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

const char *const none = nullptr;

TEST_F(Mode, CheckersJudgeAndSettersStoreInBothSectionsAndRestartTheNetwork) {
  const auto stored = [](const std::string &setting) {
    return Strings{"nvram 0 " + setting, "nvram 9 " + setting, "request 0x10000023"};
  };
  fake::expect_no_buffer_refused(getTR069WanSettingVPNType);
  for (const char *value : {"", "1"}) {
    EXPECT_EQ(effect(setTR069WanSettingVPNType, value), stored(std::string("vpn_type=") + value));
    EXPECT_EQ(get(getTR069WanSettingVPNType), value);
  }
  for (kova_setter *set : {setTR069WanSettingVPNType, setTR069WanSettingOperMode})
    EXPECT_EQ(effect(set, none, -1), Strings{});
  EXPECT_EQ(chkTR069WanSettingOperMode("Name", "2"), 0);
  EXPECT_EQ(platform.rules_asked, (Strings{"9/1 ", "9/1 1", "9/0 2"}));
  for (const char *missing : {"", none})
    EXPECT_EQ(chkTR069WanSettingOperMode(missing, "1") + chkTR069WanSettingOperMode("Name", missing), -2);
  fake::refuse_all();
  EXPECT_EQ(effect(setTR069WanSettingVPNType, "1", -1), Strings{});
  EXPECT_EQ(chkTR069WanSettingOperMode("Name", "2"), -1);
  EXPECT_EQ(effect(setTR069WanSettingOperMode, "1"), stored("oper_mode=1")); // the batch has judged
}

TEST_F(Mode, SingleSettingsMustBeWritableAndReactToNothing) {
  EXPECT_EQ(effect(kovasetL2tpPppPass, "secret"), Strings{"nvram 0 l2tp_ppp_pass=secret"});
  EXPECT_EQ(platform.rules_asked, (Strings{"9/8 secret", "writable l2tp_ppp_pass"}));
  EXPECT_EQ(get(kovaGetL2tpPppPass), " ");
  EXPECT_EQ(effect(kovasetL2tpPppPass, none, -1), Strings{});
  for (const int writable : {0, 2}) {
    platform.writable = writable;
    EXPECT_EQ(effect(kovasetL2tpPppPass, "0", -1), Strings{});
  }
  platform.writable = 1;
  fake::refuse_all();
  EXPECT_EQ(effect(kovasetL2tpPppPass, "0", -1), Strings{});
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
  const std::string layer_3 = "vpn_nat_enable=1 l3vpn_default_if=i ",
                    peer = "l2tp_lns_ip=s l2tp_ppp_user=u l2tp_ppp_pass=p";
  // The settings that a mode needs, in the order in which they are asked for, and the items of their rules.
  const std::pair<std::string, std::vector<int>> cases[] = {
      {"oper_mode=0", {0}},
      {"oper_mode=1", {0}},
      {"oper_mode=3", {0}},
      {"oper_mode=2 vpn_type=0 l2tp_host_name=h bcp_enable=0 " + layer_3 + peer, {0, 1, 5, 4, 2, 3, 6, 7, 8}},
      {"oper_mode=2 vpn_type=0 l2tp_host_name=h bcp_enable=1 " + peer, {0, 1, 5, 4, 6, 7, 8}},
      {"oper_mode=2 vpn_type=1 gre_type=0 " + layer_3 + "gre_tunnel_ip=a gre_tunnel_ip_mask=m gre_dest_ip=d",
       {0, 1, 10, 2, 3, 11, 12, 13}},
      {"oper_mode=2 vpn_type=1 gre_type=1 gre_dest_ip=d", {0, 1, 10, 13}}};
  for (const auto &[stored, items] : cases) {
    SCOPED_TRACE(stored);
    platform = {};
    platform.preset(0, stored);
    const fake::Store all = platform.nvram;
    Strings keys, rules; // and no other is looked at
    std::istringstream words(stored);
    for (std::string word; words >> word;) {
      const std::size_t end = word.find('=');
      keys.push_back("0 " + word.substr(0, end));
      rules.push_back("9/" + std::to_string(items[rules.size()]) + " " + word.substr(end + 1));
    }
    EXPECT_EQ(kovasetOperModeApply("1"), 0);
    EXPECT_EQ(platform.keys_read, keys);
    EXPECT_EQ(platform.rules_asked, rules);
    for (const auto &[key, value] : all) { // each is needed
      platform.nvram.erase(key);
      EXPECT_EQ(kovaTr069CheckOperModeNvram(), -1) << key.second;
      platform.nvram[key] = "";
      EXPECT_EQ(kovasetOperModeApply("1"), -1) << key.second;
      platform.nvram = all;
    }
    for (const int refused : items) { // and must pass its rule
      platform.rule = [&](int, const std::string &, int item) { return item == refused ? -1 : 0; };
      EXPECT_EQ(kovaTr069CheckOperModeNvram(), -1) << refused;
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
