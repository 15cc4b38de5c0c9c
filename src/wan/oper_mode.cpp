// The operation mode and the VPN.
#include "platform/webs.h"
#include "src/frame/rows.hpp"
#include "src/frame/trace.hpp"
#include "src/transaction/park.hpp"
#include "src/wan/wan_mode.hpp"

#include <cstdlib>
#include <initializer_list>

namespace kova::wan {

namespace {

// A setting and the item of its rule.
struct Setting {
  const char *key;
  int item;
};
constexpr Setting oper_mode = {"oper_mode", 0}, vpn_type = {"vpn_type", 1}, vpn_nat = {"vpn_nat_enable", 2},
                  default_interface = {"l3vpn_default_if", 3}, bcp_enable = {"bcp_enable", 4},
                  l2tp_host_name = {"l2tp_host_name", 5}, l2tp_server = {"l2tp_lns_ip", 6},
                  l2tp_user = {"l2tp_ppp_user", 7}, l2tp_password = {"l2tp_ppp_pass", 8},
                  gre_type = {"gre_type", 10}, gre_tunnel_ip = {"gre_tunnel_ip", 11},
                  gre_tunnel_mask = {"gre_tunnel_ip_mask", 12}, gre_destination = {"gre_dest_ip", 13};

bool passes_rule(Setting setting, const char *value) {
  constexpr int rules = 9;
  return passes(kova::rule_of(rules, setting.item), value);
}

// ---- Data-model parameters

int get(Setting setting, char *buf, unsigned int buflen) {
  return buflen < 1 ? -1 : answer_stored(setting.key, buf, buflen);
}

int set_unchecked(Setting setting, const char *value) {
  if (value == nullptr) return -1;
  store(setting.key, value);
  store(runtime(setting.key), value);
  mrhd_opermode_network_restart();
  return 0;
}

int set(Setting setting, const char *value) {
  return value != nullptr && passes_rule(setting, value) ? set_unchecked(setting, value) : -1;
}

int check(Setting setting, const char *name, const char *value, PendingValue &slot) {
  if (is_empty(name) || is_empty(value) || !passes_rule(setting, value)) return -1;
  return park({gPVCL.wanApnTouched, slot}, name, value);
}

// ---- Single settings

int set_if_writable(Setting setting, const char *value) {
  constexpr int writable = 1;
  if (value == nullptr || !passes_rule(setting, value) ||
      OperMode_checkKeyWritableFromNvram(setting.key) != writable)
    return -1;
  store(setting.key, value);
  return 0;
}

int set_with_layer_3_vpn(Setting setting, const char *value) {
  return tarnIsL3Vpn() == 1 ? set_if_writable(setting, value) : -1;
}

// ---- Consistency of what is stored

// Reads a setting that must be there and pass its rule.
bool load_valid(Setting setting, int &number) {
  const Text value = load(setting.key);
  const bool wrong = !value.empty() && !passes_rule(setting, value);
  if (value.empty() || wrong) {
    dbg_trace("%s %s\n", setting.key, wrong ? "wrong" : "blank");
    return false;
  }
  number = leading_number(value); // the rule has judged
  return true;
}

bool are_valid(std::initializer_list<Setting> settings) {
  int number = 0;
  for (const Setting &setting : settings)
    if (!load_valid(setting, number)) return false;
  return true;
}

bool l2tp_is_complete() {
  int bridged = 0;
  if (!are_valid({l2tp_host_name}) || !load_valid(bcp_enable, bridged)) return false;
  if (bridged == 0 && !are_valid({vpn_nat, default_interface})) return false;
  return are_valid({l2tp_server, l2tp_user, l2tp_password});
}

bool gre_is_complete() {
  int layer_2 = 0;
  if (!load_valid(gre_type, layer_2)) return false;
  if (layer_2 == 0 && !are_valid({vpn_nat, default_interface, gre_tunnel_ip, gre_tunnel_mask})) return false;
  return are_valid({gre_destination});
}

} // namespace

} // namespace kova::wan

int kovaTr069CheckOperModeNvram(void) {
  using namespace kova::wan;
  int mode = 0, vpn = 0;
  if (!load_valid(oper_mode, mode)) return -1;
  if (mode != vpn_mode) return 0;
  if (!load_valid(vpn_type, vpn)) return -1;
  const bool complete = vpn == vpn_l2tp ? l2tp_is_complete() : vpn == vpn_gre && gre_is_complete();
  return complete ? 0 : -1;
}

int tarnIsL3Vpn(void) {
  using kova::Section;
  const kova::Text type = kova::load("vpn_type");
  const char *bridging = kova::equal(type, "0")   ? "bcp_enable"
                         : kova::equal(type, "1") ? "gre_type"
                                                  : nullptr;
  if (bridging != nullptr && kova::equal(kova::load(bridging), "0")) return 1;
  dbg_trace("\n\ntarnIsL3Vpn() return 0\n\n");
  return 0;
}

using namespace kova;

int kovasetOperModeApply(const char *value) {
  if (value == nullptr) return -1;
  if (!equal(value, "1") || kovaTr069CheckOperModeNvram() == 0) return 0;
  dbg_trace("%s() kovaTr069CheckOperModeNvram() fail\n", __func__);
  return -1;
}

int kovaGetOperModeApply(char *, unsigned int) {
  return 0;
}

#define GETTER(getter, setting)                                                                              \
  int getter(char *buf, unsigned int buflen) {                                                               \
    return wan::get(wan::setting, buf, buflen);                                                              \
  }
#define SETTER(setter, how, setting)                                                                         \
  int setter(const char *value) {                                                                            \
    return wan::how(wan::setting, value);                                                                    \
  }
#define CHECKER(checker, setting, slot)                                                                      \
  int checker(const char *name, const char *value) {                                                         \
    return wan::check(wan::setting, name, value, gPVCL.slot);                                                \
  }
#define OLDER_GETTER(getter, setting) STORED(getter, wan::setting.key)

// clang-format off
GETTER(getTR069WanSettingOperMode,            oper_mode)        SETTER(setTR069WanSettingOperMode,            set_unchecked, oper_mode)
GETTER(getTR069WanSettingVPNType,             vpn_type)         SETTER(setTR069WanSettingVPNType,             set,           vpn_type)
GETTER(getTR069WanSettingVPNNatEnable,        vpn_nat)          SETTER(setTR069WanSettingVPNNatEnable,        set,           vpn_nat)
GETTER(getTR069WanSettingBCPEnable,           bcp_enable)       SETTER(setTR069WanSettingBCPEnable,           set,           bcp_enable)
GETTER(getTR069WanSettingL2TPHostName,        l2tp_host_name)   SETTER(setTR069WanSettingL2TPHostName,        set,           l2tp_host_name)
GETTER(getTR069WanSettingL2TPServerIPAddress, l2tp_server)      SETTER(setTR069WanSettingL2TPServerIPAddress, set,           l2tp_server)
GETTER(getTR069WanSettingL2TPUserName,        l2tp_user)        SETTER(setTR069WanSettingL2TPUserName,        set,           l2tp_user)
GETTER(getTR069WanSettingL2TPPassword,        l2tp_password)    SETTER(setTR069WanSettingL2TPPassword,        set,           l2tp_password)
GETTER(getTR069WanSettingGREType,             gre_type)         SETTER(setTR069WanSettingGREType,             set,           gre_type)
GETTER(getTR069WanSettingGREIPAddress,        gre_tunnel_ip)    SETTER(setTR069WanSettingGREIPAddress,        set,           gre_tunnel_ip)
GETTER(getTR069WanSettingGRESubnetMask,       gre_tunnel_mask)  SETTER(setTR069WanSettingGRESubnetMask,       set,           gre_tunnel_mask)
GETTER(getTR069WanSettingGREDestIPAddress,    gre_destination)  SETTER(setTR069WanSettingGREDestIPAddress,    set,           gre_destination)

CHECKER(chkTR069WanSettingOperMode,  oper_mode,  operMode)
CHECKER(chkTR069WanSettingVPNType,   vpn_type,   vpnType)
CHECKER(chkTR069WanSettingBCPEnable, bcp_enable, bcpEnable)
CHECKER(chkTR069WanSettingGREType,   gre_type,   greType)

OLDER_GETTER(kovaGetOperMode,        oper_mode)         SETTER(kovasetOperMode,        set_if_writable,      oper_mode)
OLDER_GETTER(kovaGetVpnType,         vpn_type)          SETTER(kovasetVpnType,         set_if_writable,      vpn_type)
OLDER_GETTER(kovaGetVpnNatEnable,    vpn_nat)           SETTER(kovasetVpnNatEnable,    set_with_layer_3_vpn, vpn_nat)
OLDER_GETTER(kovaGetL3vpnDefaultIf,  default_interface) SETTER(kovasetL3vpnDefaultIf,  set_with_layer_3_vpn, default_interface)
OLDER_GETTER(kovaGetBcpEnable,       bcp_enable)        SETTER(kovasetBcpEnable,       set_if_writable,      bcp_enable)
OLDER_GETTER(kovaGetL2tpHostname,    l2tp_host_name)    SETTER(kovasetL2tpHostname,    set_if_writable,      l2tp_host_name)
OLDER_GETTER(kovaGetL2tpLnsIp,       l2tp_server)       SETTER(kovasetL2tpLnsIp,       set_if_writable,      l2tp_server)
OLDER_GETTER(kovaGetL2tpPppUser,     l2tp_user)         SETTER(kovasetL2tpPppUser,     set_if_writable,      l2tp_user)
CONSTANT(kovaGetL2tpPppPass, " ")           SETTER(kovasetL2tpPppPass,     set_if_writable,      l2tp_password)
OLDER_GETTER(kovaGetGreType,         gre_type)          SETTER(kovasetGreType,         set_if_writable,      gre_type)
OLDER_GETTER(kovaGetGreTunnelIp,     gre_tunnel_ip)     SETTER(kovasetGreTunnelIp,     set_if_writable,      gre_tunnel_ip)
OLDER_GETTER(kovaGetGreTunnelIpMask, gre_tunnel_mask)   SETTER(kovasetGreTunnelIpMask, set_if_writable,      gre_tunnel_mask)
OLDER_GETTER(kovaGetGreDestIp,       gre_destination)   SETTER(kovasetGreDestIp,       set_if_writable,      gre_destination)
