// The operation mode and the VPN.
#include "fake/fake.hpp"

#include <kova/wan.h>

#include <sstream>

using fake::platform;
using fake::Strings;

namespace {

class Mode : public fake::Test {};

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

} // namespace
