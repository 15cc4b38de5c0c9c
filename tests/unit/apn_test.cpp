// The APN profiles and the rules across them.
#include "fake/fake.hpp"
#include "platform/webs.h"

#include <kova/transaction.h>
#include <kova/wan.h>

#include <algorithm>
#include <array>
#include <cstring>

using fake::effect;
using fake::get;
using fake::platform;
using fake::Strings;

namespace {

class Apn : public fake::Test {};

// clang-format off
// A profile's accessors, in the order of the fields.
const struct Accessors {
  kova_getter *get;
  kova_setter *set = nullptr;
} profiles[][13] = {
#define BOTH(n, name) {getTR069APN##n##name, setTR069APN##n##name}
#define PROFILE(n)                                                                                                      \
  {BOTH(n, Enable), BOTH(n, Name), BOTH(n, Auth), BOTH(n, UserName), BOTH(n, Password), BOTH(n, PDPType), BOTH(n, MTU), \
   BOTH(n, ApplyTo), BOTH(n, BridgeVID), BOTH(n, GREL2DestIP), BOTH(n, GREL2VlanList), BOTH(n, GREL2UntaggedVlan),      \
   {getTR069APN##n##ProfileName}}
    PROFILE(1), PROFILE(2), PROFILE(3), PROFILE(4), PROFILE(5), PROFILE(6), PROFILE(7), PROFILE(8)};
#define RANGES(n) {chkTR069APN##n##ApplyTo, chkTR069APN##n##BridgeVID}
const std::pair<kova_checker *, kova_checker *> checkers[] = {
    RANGES(1), RANGES(2), RANGES(3), RANGES(4), RANGES(5), RANGES(6), RANGES(7), RANGES(8)};

const char *const none = nullptr;
// What the setters accept as it is, refuse, and store in another form.
const struct Field {
  const char *leaf;
  bool updates; // the APN configuration; else the operation-mode network restarts
  std::vector<const char *> accepted, refused;
  std::vector<std::pair<const char *, std::string>> rewritten;
} fields[] = {
    {"enable",               true,  {"0", "1"},                  {"", none, "2", "01", "1 "}, {}},
    {"apn_name",             true,  {"", "internet"},            {}, {{none, ""}}},
    {"auth_type",            true,  {"1", "4"},                  {"", none, "0", "5", "-1", "x", "4294967297"}, {{"02", "2"}, {"4x", "4"}}},
    {"username",             true,  {"", "user"},                {}, {{none, ""}}},
    {"password",             true,  {"", "`secret`"},            {}, {{none, ""}}},
    {"pdn_type",             true,  {"0", "2"},                  {"", none, "3", "-1", "x"}, {{" 1", "1"}}},
    {"mtu",                  true,  {"576", "1500"},             {"", none, "575", "1501", "x"}, {{"01500", "1500"}}},
    {"apply_to",             false, {"0", "3", "03", "3x"},      {"", none, "4", "-1", "x"}, {}},
    {"bridge_vid",           false, {"4094", "9999", "x"},       {"", none}, {}},
    {"gre_l2_dest_ip",       false, {"10.0.0.1", "x"},           {"", none}, {}},
    {"gre_l2_vlan_list",     false, {"", "100 200"},             {}, {{none, ""}}},
    {"gre_l2_untagged_vlan", false, {"", "5"},                   {}, {{none, ""}}},
    {"profile_name",         false, {},                          {}, {}}};
// clang-format on

std::string path_of(std::size_t number, const std::string &leaf) {
  return "tarn/cm_config/apnprofile/apn" + std::to_string(number) + "/" + leaf;
}

TEST_F(Apn, SettersJudgeStoreAndReactAfterTheTreeIsClosed) {
  for (std::size_t number = 1; number <= 8; ++number)
    for (const Field &field : fields) {
      const std::string leaf = field.leaf, path = path_of(number, leaf);
      SCOPED_TRACE(path);
      kova_setter *set = profiles[number - 1][&field - fields].set;
      if (set == nullptr || set == setTR069APN1Enable) continue; // which stays enabled
      auto stored = field.rewritten;
      for (const char *value : field.accepted)
        stored.emplace_back(value, value);
      std::vector<const char *> refused = field.refused;
      if (number == 8 && leaf == "apply_to") { // takes any text
        stored.emplace_back("x", "x");
        refused = {"", none};
      }
      platform = {};
      for (const auto &[value, text] : stored)
        EXPECT_EQ(effect(set, value), (Strings{"tree open", "tree /" + path + "=" + text, "tree close",
                                               field.updates ? "request 0x10000007" : "request 0x10000023"}));
      for (const char *value : refused)
        EXPECT_EQ(effect(set, value, -1), Strings{});
      // A failure leaves the tree open, and asks for nothing.
      platform.tree_refuses[path] = true;
      EXPECT_EQ(effect(set, field.accepted[1], -1), Strings{"tree open"});
      platform.tree_opens = false;
      EXPECT_EQ(effect(set, field.accepted[1], -1), Strings{});
    }
}

TEST_F(Apn, TheFirstProfileStaysEnabled) {
  EXPECT_EQ(effect(setTR069APN1Enable, "1"), Strings{});
  for (const char *value : {"0", "2", "", none})
    EXPECT_EQ(effect(setTR069APN1Enable, value, -1), Strings{});
}

TEST_F(Apn, EachProfileReadsItsOwnLeaves) {
  int result = 0;
  EXPECT_EQ(get(getTR069APN2Name, result, 4), "####"); // no such leaf
  EXPECT_EQ(result, -1);
  EXPECT_EQ(platform.tree_opened, 1);
  for (std::size_t number = 1; number <= 8; ++number)
    for (const Field &field : fields) {
      const std::string path = path_of(number, field.leaf), value = field.leaf + std::to_string(number);
      platform.tree[path] = value;
      EXPECT_EQ(get(profiles[number - 1][&field - fields].get), value);
    }
  EXPECT_EQ(platform.tree_opened, 1);
  platform.tree_opens = false;
  EXPECT_EQ(get(getTR069APN2Name, result, 4), "####");
  EXPECT_EQ(result, -1);
}

TEST_F(Apn, CheckersKnowTheRanges) {
  for (const auto &[check_use, check_vlan] : checkers) {
    for (const char *value : {"0", "03", "3x"})
      EXPECT_EQ(check_use("Name", value), 0) << value;
    for (const char *value : {"0", "4094"})
      EXPECT_EQ(check_vlan("Name", value), 0) << value;
    EXPECT_EQ(check_use("Name", "4") + check_vlan("Name", "4095"), -2);
    for (const char *value : {"-1", "x", "", none})
      EXPECT_EQ(check_use("Name", value) + check_vlan("Name", value), -2);
  }
}

TEST_F(Apn, TheCommonMtuAnnouncesItself) {
  fake::expect_no_buffer_refused(getTR069APNMTU);
  EXPECT_EQ(effect(setTR069APNMTU, "1400"),
            (Strings{"nvram 0 internet_mtu=1400", "run test_cpeevent call \"ce_set_mtu\""}));
  EXPECT_EQ(get(getTR069APNMTU), "1400");
  fake::refuse_all();
  EXPECT_EQ(effect(setTR069APNMTU, "9", -1), Strings{});
  EXPECT_EQ(platform.rules_asked, (Strings{"30/1 1400", "30/1 9"}));
}

// ---- Rules across the profiles

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
