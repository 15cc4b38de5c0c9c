// The operation mode and the APN profiles: what goes together.
#include "src/wan/group.hpp"

#include "platform/keys.hpp"
#include "src/wan/wan_mode.hpp"

namespace kova::wan {

namespace {

using transaction::FaultNames;
using transaction::Group;
using transaction::GroupedValue;
using transaction::List;

class OperModeRecord {
public:
  OperModeRecord() : record_(getOperModeFromNvram()) {}
  ~OperModeRecord() {
    if (record_ != nullptr) OperMode_delete(record_);
  }
  OperModeRecord(const OperModeRecord &) = delete;
  OperModeRecord &operator=(const OperModeRecord &) = delete;
  bool loaded() const { return record_ != nullptr; }
  OperMode &operator*() const { return *record_; }
  OperMode *operator->() const { return record_; }

private:
  OperMode *record_;
};

template <typename Number>
void take_over(Number &field, const PendingValue &slot) {
  if (slot.name == nullptr) return;
  field = static_cast<Number>(leading_number(pvcl_slot_value(&slot))); // 0 for a text without a number
}

void take_over_mode(OperMode &mode) {
  take_over(mode.oper_mode, gPVCL.operMode);
  take_over(mode.vpn_type, gPVCL.vpnType);
  take_over(mode.bcp_enable, gPVCL.bcpEnable);
  take_over(mode.gre_type, gPVCL.greType);
}

void take_over_profile(ApnRule &rule, const PendingApn &pending) {
  take_over(rule.enable, pending.apnEnable);
  take_over(rule.apply_to, pending.apnApplyTo);
  const bool bridges = rule.apply_to == no_bearer && *pvcl_slot_value(&pending.apnBridgeVid) != '\0';
  if (bridges) take_over(rule.bridge_vid, pending.apnBridgeVid);
}

bool profiles_fit(const OperMode &mode) {
  ApnRule profiles[8] = {};
  if (getApnCfgFromNvram(profiles) != 0) return false;
  for (int i = 0; i < 8; ++i)
    take_over_profile(profiles[i], gPVCL.apn[i]);
  return have_data_bear_type(profiles) == 0 && check_apn_bear_type(&mode, profiles) == 0 &&
         check_vlan_id(&mode, profiles) == 0;
}

// Modes 1 and 3 have no NAT: what needs it is switched off, and its switches are kept for the way back. A
// second batch in such a mode keeps the switches again, by then "0".
void carry_nat_switches(int mode) {
  static constexpr const char *switches[][2] = {{key::dmz_enable, "DMZNatEnable"},
                                                {key::port_forward_enable, "PortForwardNatEnable"},
                                                {"PortTriggerEnable", "PortTriggerNatEnable"},
                                                {"ConnectLimitEnable", "ConnectLimitNatEnable"}};
  const bool save = mode == router_mode || mode == bridge_mode,
             restore = mode == nat_mode || mode == vpn_mode;
  for (const auto &[enable, kept] : switches) {
    if (save) {
      store(kept, load(enable));
      store(enable, "0");
    } else if (restore) {
      store(enable, load(kept));
    }
  }
}

bool judge_wan_apn(const Group &group, FaultNames &faults) {
  const OperModeRecord before;
  if (!before.loaded()) return false;
  const OperModeRecord after;
  if (!after.loaded()) return false;
  take_over_mode(*after);

  if (!profiles_fit(*after)) {
    group.each_slot([&faults](const PendingValue &slot) {
      if (slot.name != nullptr) faults.add_within_size(slot.name);
    });
    return false;
  }

  carry_nat_switches(after->oper_mode);
  const bool leaves_vpn = after->oper_mode != vpn_mode, changes_vpn = before->vpn_type != after->vpn_type;
  if (before->oper_mode == vpn_mode && (leaves_vpn || changes_vpn)) kova_trigger_cpe_event("ce_vpn stop");
  return true;
}

// What the request did not set is in the records of the mode and the profiles.
constexpr GroupedValue mode_values[] = {
    {&List::operMode}, {&List::vpnType}, {&List::bcpEnable}, {&List::greType}};

} // namespace

constinit const Group wan_apn_group = {&List::wanApnTouched, Section::config, mode_values,
                                       judge_wan_apn,        nullptr,         gPVCL.apn};

} // namespace kova::wan
