// The APN profiles' accessors: one set, stamped for each profile.
#include "src/frame/settings.hpp"
#include "src/frame/shell.hpp"
#include "src/frame/trace.hpp"
#include "src/frame/tree.hpp"
#include "src/transaction/park.hpp"

#include <kova/wan.h>

#include <cstdio>
#include <cstdlib>

namespace kova::wan {

namespace {

Text leaf_path(int profile, const char *leaf) {
  Text path;
  std::snprintf(path.chars, Text::size, "/tarn/cm_config/apnprofile/apn%d/%s", profile, leaf);
  return path;
}

int get(int profile, const char *leaf, char *buf, unsigned int buflen) {
  return get_tree_leaf(leaf_path(profile, leaf), buf, buflen);
}

using Reaction = void();

int set(int profile, const char *leaf, const char *value, Reaction *react) {
  if (!store_tree_leaf(leaf_path(profile, leaf), value)) {
    dbg_trace("[TR069]set APN%d Error, %s(%s) value error\n", profile, leaf, value);
    return -1;
  }
  react();
  return 0;
}

struct Range {
  long least, most;
};

// Does the text begin with a number of the range?
bool in_range(const char *text, Range range, long &number) {
  char *end = nullptr;
  number = std::strtol(text, &end, 10);
  return end != text && number >= range.least && number <= range.most;
}
bool in_range(const char *text, Range range) {
  long number = 0;
  return in_range(text, range, number);
}

int set_number(int profile, const char *leaf, const char *value, Range range) {
  long number = 0;
  if (!in_range(text_or_empty(value), range, number)) return -1;
  char text[24];
  std::snprintf(text, sizeof text, "%ld", number);
  return set(profile, leaf, text, mrhd_update_apncfg);
}

int set_required(int profile, const char *leaf, const char *value) {
  return is_empty(value) ? -1 : set(profile, leaf, value, mrhd_opermode_network_restart);
}

constexpr int always_enabled = 1; // profile 1: without it the device would be out of reach
int set_enable(int profile, const char *value) {
  if (profile == always_enabled) return equal(text_or_empty(value), "1") ? 0 : -1;
  return is_zero_or_one(text_or_empty(value)) ? set(profile, "enable", value, mrhd_update_apncfg) : -1;
}

constexpr Range bearer_range = {0, 3}, vlan_range = {0, 4094};
constexpr int without_bearer_range = 8; // profile 8 takes any text
int set_bearer(int profile, const char *value) {
  if (profile != without_bearer_range && !in_range(text_or_empty(value), bearer_range)) return -1;
  return set_required(profile, "apply_to", value);
}

int check(const char *name, const char *value, PendingValue &slot) {
  return is_empty(name) || is_empty(value) ? -1 : park({gPVCL.wanApnTouched, slot}, name, value);
}
int check_range(const char *name, const char *value, Range range, PendingValue &slot) {
  return in_range(text_or_empty(value), range) ? check(name, value, slot) : -1;
}

} // namespace

} // namespace kova::wan

using namespace kova;

#define GETTER(n, parameter, leaf)                                                                           \
  int getTR069APN##n##parameter(char *buf, unsigned int buflen) {                                            \
    return wan::get(n, leaf, buf, buflen);                                                                   \
  }
#define SETTER(n, parameter, call)                                                                           \
  int setTR069APN##n##parameter(const char *value) {                                                         \
    return call;                                                                                             \
  }
#define CHECKER(n, parameter, call)                                                                          \
  int chkTR069APN##n##parameter(const char *name, const char *value) {                                       \
    return call;                                                                                             \
  }
#define UPDATE(n, leaf) wan::set(n, leaf, text_or_empty(value), mrhd_update_apncfg)
#define RESTART(n, leaf) wan::set(n, leaf, text_or_empty(value), mrhd_opermode_network_restart)

// clang-format off
#define PROFILE(n)                                                                                           \
  GETTER(n, Enable,            "enable")               SETTER(n, Enable,    wan::set_enable(n, value))                           \
  GETTER(n, ProfileName,       "profile_name")                                                                                   \
  GETTER(n, Name,              "apn_name")             SETTER(n, Name,      UPDATE(n, "apn_name"))                               \
  GETTER(n, Auth,              "auth_type")            SETTER(n, Auth,      wan::set_number(n, "auth_type", value, {1, 4}))      \
  GETTER(n, UserName,          "username")             SETTER(n, UserName,  UPDATE(n, "username"))                               \
  GETTER(n, Password,          "password")             SETTER(n, Password,  UPDATE(n, "password"))                               \
  GETTER(n, PDPType,           "pdn_type")             SETTER(n, PDPType,   wan::set_number(n, "pdn_type", value, {0, 2}))       \
  GETTER(n, MTU,               "mtu")                  SETTER(n, MTU,       wan::set_number(n, "mtu", value, {576, 1500}))       \
  GETTER(n, ApplyTo,           "apply_to")             SETTER(n, ApplyTo,   wan::set_bearer(n, value))                           \
  GETTER(n, BridgeVID,         "bridge_vid")           SETTER(n, BridgeVID, wan::set_required(n, "bridge_vid", value))           \
  GETTER(n, GREL2DestIP,       "gre_l2_dest_ip")       SETTER(n, GREL2DestIP, wan::set_required(n, "gre_l2_dest_ip", value))     \
  GETTER(n, GREL2VlanList,     "gre_l2_vlan_list")     SETTER(n, GREL2VlanList, RESTART(n, "gre_l2_vlan_list"))                  \
  GETTER(n, GREL2UntaggedVlan, "gre_l2_untagged_vlan") SETTER(n, GREL2UntaggedVlan, RESTART(n, "gre_l2_untagged_vlan"))          \
  CHECKER(n, Enable,    wan::check(name, value, gPVCL.apn[n - 1].apnEnable))                                                     \
  CHECKER(n, ApplyTo,   wan::check_range(name, value, wan::bearer_range, gPVCL.apn[n - 1].apnApplyTo))                           \
  CHECKER(n, BridgeVID, wan::check_range(name, value, wan::vlan_range, gPVCL.apn[n - 1].apnBridgeVid))
// clang-format on

PROFILE(1)
PROFILE(2)
PROFILE(3)
PROFILE(4)
PROFILE(5)
PROFILE(6)
PROFILE(7)
PROFILE(8)

int getTR069APNMTU(char *buf, unsigned int buflen) {
  if (buflen < 1) return -1;
  return answer_stored("internet_mtu", buf, buflen);
}

int setTR069APNMTU(const char *value) {
  constexpr Rule mtu_rule = rule_of(30, 1);
  if (!passes(mtu_rule, text_or_empty(value))) return -1;
  store("internet_mtu", text_or_empty(value));
  kova_trigger_cpe_event("ce_set_mtu");
  return 0;
}
