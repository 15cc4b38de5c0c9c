// The rules across the APN profiles.
#include "fake/fake.hpp"
#include "platform/webs.h"

#include <kova/transaction.h>
#include <kova/wan.h>

#include <algorithm>
#include <array>
#include <cstring>

using fake::platform;
using fake::Strings;

namespace {

class Apn : public fake::Test {};

std::string path_of(std::size_t number, const std::string &leaf) {
  return "tarn/cm_config/apnprofile/apn" + std::to_string(number) + "/" + leaf;
}

using Rules = std::vector<std::array<int, 4>>; // profile number, enable, bearer use, VLAN

std::vector<ApnRule> records(const Rules &rules) {
  std::vector<ApnRule> result(8);
  for (const auto &[number, enable, use, vlan] : rules)
    result[static_cast<std::size_t>(number) - 1] = {enable, use, vlan, ""};
  return result;
}

const OperMode nat = {0, 0, 0, 0}, router = {1, 0, 0, 0}, l2tp = {2, 0, 1, 1}, layer_3_gre = {2, 1, 0, 0},
               layer_2_gre = {2, 1, 0, 1}, bridge = {3, 0, 0, 0}, gre_without_vpn = {0, 1, 0, 1};

TEST_F(Apn, RecordsAreReadThroughPathsWithoutALeadingSlash) {
  std::vector<ApnRule> rules(8);
  rules[7] = {5, 6, 7, "kept"};
  for (std::size_t number = 1; number <= 8; ++number) {
    platform.tree[path_of(number, "enable")] = number == 8 ? "x" : "1";
    platform.tree[path_of(number, "apply_to")] = std::to_string(number);
    platform.tree[path_of(number, "bridge_vid")] = "40" + std::to_string(number);
  }
  EXPECT_EQ(getApnCfgFromNvram(rules.data()), 0);
  EXPECT_EQ(platform.keys_read[4], "tarn/cm_config/apnprofile/apn2/apply_to");
  EXPECT_EQ(platform.keys_read.size(), 24U);
  EXPECT_EQ(rules[0].enable + rules[0].apply_to + rules[0].bridge_vid, 1 + 1 + 401);
  EXPECT_EQ(rules[7].enable + rules[7].apply_to + rules[7].bridge_vid, 0 + 8 + 408);
  EXPECT_STREQ(rules[7].gre_l2_vlan_list, "kept");
  EXPECT_EQ(platform.done, (Strings{"tree open", "tree close"}));
  platform.tree.erase(path_of(4, "bridge_vid"));
  EXPECT_EQ(getApnCfgFromNvram(rules.data()), -1);
  EXPECT_EQ(platform.keys_read.size(), 24U + 12U);
}

TEST_F(Apn, OneOfTheFirstSevenProfilesMustCarryData) {
  EXPECT_EQ(have_data_bear_type(records({{7, 1, 0, 0}}).data()), 0);
  for (const Rules &rules : {Rules{{8, 1, 0, 0}}, Rules{{1, 1, 1, 0}, {2, 0, 0, 0}}, Rules{{3, 2, 0, 0}}})
    EXPECT_EQ(have_data_bear_type(records(rules).data()), -1);
}

TEST_F(Apn, ABearerUseBelongsToOneProfile) {
  const auto check = [](const OperMode &mode, int use, int other_use, int other_enable = 1) {
    return check_apn_bear_type(&mode, records({{1, 1, use, 0}, {8, other_enable, other_use, 0}}).data());
  };
  for (const OperMode &mode : {nat, l2tp, layer_3_gre, gre_without_vpn})
    EXPECT_EQ(check(mode, 0, 0), -1);
  for (const OperMode &mode : {router, layer_2_gre, bridge})
    EXPECT_EQ(check(mode, 0, 0), 0);
  for (const OperMode &mode : {nat, layer_2_gre, bridge}) {
    for (const int use : {1, 2})
      EXPECT_EQ(check(mode, use, use), -1);
    EXPECT_EQ(check(mode, 3, 3) + check(mode, 1, 2) + check(mode, 1, 1, 0) + check(mode, 1, 1, 2), 0);
  }
  EXPECT_EQ(check(router, 1, 1), 0);
}

TEST_F(Apn, BridgedDataBearersHaveVlansOfTheirOwn) {
  const auto check = [](const OperMode &mode, int enable, int use, int vlan) {
    return check_vlan_id(&mode, records({{1, 1, 0, 9}, {8, enable, use, vlan}}).data());
  };
  EXPECT_EQ(check(bridge, 1, 0, 9), -1);
  EXPECT_EQ(check(bridge, 1, 0, 8), 0);
  EXPECT_EQ(check(bridge, 0, 0, 9), 0);
  EXPECT_EQ(check(bridge, 1, 3, 9), 0);
  for (const OperMode &mode : {nat, router, layer_2_gre})
    EXPECT_EQ(check(mode, 1, 0, 9), 0);
}

TEST_F(Apn, GreVlansAreInRangeAndListedOnce) {
  const auto check = [](const OperMode &mode, const std::string &first, const std::string &second,
                        int second_profile = 2, int use = 0) {
    std::vector<ApnRule> rules = records({{1, 1, 0, 0}, {second_profile, 1, use, 0}});
    std::strncpy(rules[0].gre_l2_vlan_list, first.c_str(), sizeof rules[0].gre_l2_vlan_list - 1);
    std::strncpy(rules[static_cast<std::size_t>(second_profile) - 1].gre_l2_vlan_list, second.c_str(), 143);
    return check_gre_l2_vlan_list(&mode, rules.data());
  };
  std::string many; // as many as a list can hold
  for (int id = 10; many.size() < 140; ++id)
    many += std::to_string(id) + " ";
  for (const std::string &list :
       {std::string(), std::string("10 4094"), std::string("0"), std::string("  11   12 "), many})
    EXPECT_EQ(check(layer_2_gre, list, "4000"), 0) << list;
  for (const char *list : {"5", "9", "-1", "4095", "100 100", "100 200", "0 0", "x y", "10 99999", "200x"})
    EXPECT_EQ(check(layer_2_gre, list, "200"), -1) << list;
  EXPECT_EQ(check(layer_3_gre, "5", "5"), 0);
  EXPECT_EQ(check(gre_without_vpn, "5", "5"), 0);
  EXPECT_EQ(check(layer_2_gre, "100", "100", 7), -1);
  EXPECT_EQ(check(layer_2_gre, "100", "100", 8), 0);    // profile 8 is not looked at
  EXPECT_EQ(check(layer_2_gre, "100", "100", 2, 1), 0); // nor one that carries no data
}

} // namespace
