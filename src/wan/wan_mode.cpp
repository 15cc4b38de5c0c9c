// What the stored settings say of the operation mode, and whether they are complete for it.
#include "src/wan/wan_mode.hpp"

#include "platform/keys.hpp"
#include "src/frame/trace.hpp"

#include <initializer_list>

namespace kova::wan {

namespace {

struct Setting {
  const char *key;
  Rule rule;
};
constexpr Setting oper_mode = {key::oper_mode, RULE_WAN_OPER_MODE},
                  vpn_type = {key::vpn_type, RULE_WAN_VPN_TYPE}, bcp_enable = {key::bcp_enable, RULE_WAN_BCP},
                  gre_type = {key::gre_type, RULE_WAN_GRE_TYPE}, vpn_nat = {key::vpn_nat, RULE_WAN_VPN_NAT},
                  default_interface = {key::layer_3_interface, RULE_WAN_DEFAULT_INTERFACE},
                  l2tp_host_name = {key::l2tp_host_name, RULE_WAN_L2TP_HOST_NAME},
                  l2tp_server = {key::l2tp_server, RULE_WAN_L2TP_SERVER},
                  l2tp_user = {key::l2tp_user, RULE_WAN_L2TP_USER},
                  l2tp_password = {key::l2tp_password, RULE_WAN_L2TP_PASSWORD},
                  gre_address = {key::gre_address, RULE_WAN_GRE_TUNNEL_ADDRESS},
                  gre_netmask = {key::gre_netmask, RULE_WAN_GRE_TUNNEL_MASK},
                  gre_destination = {key::gre_destination, RULE_WAN_GRE_DESTINATION};

// Reads a setting that must be there and pass its rule.
bool load_valid(Setting setting, int &number) {
  const Text value = load(setting.key);
  const bool wrong = !value.empty() && !passes(setting.rule, value);
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
  if (layer_2 == 0 && !are_valid({vpn_nat, default_interface, gre_address, gre_netmask})) return false;
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
  const kova::Text type = kova::load(kova::key::vpn_type);
  const char *bridging = kova::equal(type, "0")   ? kova::key::bcp_enable
                         : kova::equal(type, "1") ? kova::key::gre_type
                                                  : nullptr;
  if (bridging != nullptr && kova::equal(kova::load(bridging), "0")) return 1;
  dbg_trace("\n\ntarnIsL3Vpn() return 0\n\n");
  return 0;
}
