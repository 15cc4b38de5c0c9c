#include "model/rows.hpp"

#include <kova/wan.h>

namespace kova::model {
namespace {

// clang-format off
#define WAN     "InternetGatewayDevice.WANDevice.1."
#define SETTING WAN "X_KOVA_WANSetting."
#define MODE    WAN "X_KOVA_OperMode."

constexpr Parameter rows[] = {
    // Set transaction: judged together with the APN profiles, stored, and the network restarted.
    CHECKED   (SETTING "OperMode", UnsignedInt,
               getTR069WanSettingOperMode, setTR069WanSettingOperMode, chkTR069WanSettingOperMode,
               "", "Operation mode of the WAN, 0 to 3; 2 carries the traffic through the VPN"),
    CHECKED   (SETTING "VPNType", UnsignedInt,
               getTR069WanSettingVPNType, setTR069WanSettingVPNType, chkTR069WanSettingVPNType,
               "", "0: L2TP, 1: GRE"),
    READ_WRITE(SETTING "VPNNatEnable", Boolean, getTR069WanSettingVPNNatEnable, setTR069WanSettingVPNNatEnable,
               "", "Whether addresses are translated into the VPN"),
    CHECKED   (SETTING "BCPEnable", Boolean,
               getTR069WanSettingBCPEnable, setTR069WanSettingBCPEnable, chkTR069WanSettingBCPEnable,
               "", "L2TP tunnel: 0 carries layer 3, 1 is bridged"),
    READ_WRITE(SETTING "L2TPHostName", String, getTR069WanSettingL2TPHostName, setTR069WanSettingL2TPHostName,
               "", "L2TP: name that this device gives itself"),
    READ_WRITE(SETTING "L2TPServerIPAddress", String,
               getTR069WanSettingL2TPServerIPAddress, setTR069WanSettingL2TPServerIPAddress,
               "", "L2TP: address of the server"),
    READ_WRITE(SETTING "L2TPUserName", String, getTR069WanSettingL2TPUserName, setTR069WanSettingL2TPUserName,
               "", "L2TP: user name"),
    READ_WRITE(SETTING "L2TPPassword", String, getTR069WanSettingL2TPPassword, setTR069WanSettingL2TPPassword,
               "", "L2TP: password, shown as it is stored"),
    CHECKED   (SETTING "GREType", UnsignedInt,
               getTR069WanSettingGREType, setTR069WanSettingGREType, chkTR069WanSettingGREType,
               "", "GRE tunnel: 0 carries layer 3, 1 layer 2"),
    READ_WRITE(SETTING "GREIPAddress", IPAddress, getTR069WanSettingGREIPAddress, setTR069WanSettingGREIPAddress,
               "", "GRE: own address in the tunnel"),
    READ_WRITE(SETTING "GRESubnetMask", IPAddress, getTR069WanSettingGRESubnetMask, setTR069WanSettingGRESubnetMask,
               "", "GRE: mask of the tunnel"),
    READ_WRITE(SETTING "GREDestIPAddress", IPAddress,
               getTR069WanSettingGREDestIPAddress, setTR069WanSettingGREDestIPAddress,
               "", "GRE: far end of the tunnel"),

    // The same settings one by one: stored if they can be written in the current mode, without a restart.
    READ_WRITE(MODE "OperMode", UnsignedInt, kovaGetOperMode, kovasetOperMode,
               "", "Operation mode of the WAN, 0 to 3; 2 carries the traffic through the VPN"),
    READ_WRITE(MODE "VPNType", UnsignedInt, kovaGetVpnType, kovasetVpnType,
               "", "0: L2TP, 1: GRE"),
    READ_WRITE(MODE "VPNNatEnable", Boolean, kovaGetVpnNatEnable, kovasetVpnNatEnable,
               "", "Whether addresses are translated into the VPN; only with a layer-3 VPN"),
    READ_WRITE(MODE "L3VPNDefaultIf", String, kovaGetL3vpnDefaultIf, kovasetL3vpnDefaultIf,
               "", "Default interface; only with a layer-3 VPN"),
    READ_WRITE(MODE "BCPEnable", Boolean, kovaGetBcpEnable, kovasetBcpEnable,
               "", "L2TP tunnel: 0 carries layer 3, 1 is bridged"),
    READ_WRITE(MODE "L2TPHostName", String, kovaGetL2tpHostname, kovasetL2tpHostname,
               "", "L2TP: name that this device gives itself"),
    READ_WRITE(MODE "L2TPServerIPAddress", String, kovaGetL2tpLnsIp, kovasetL2tpLnsIp,
               "", "L2TP: address of the server"),
    READ_WRITE(MODE "L2TPUserName", String, kovaGetL2tpPppUser, kovasetL2tpPppUser,
               "", "L2TP: user name"),
    READ_WRITE(MODE "L2TPPassword", String, kovaGetL2tpPppPass, kovasetL2tpPppPass,
               "", "L2TP: password; reads as one blank"),
    READ_WRITE(MODE "GREType", UnsignedInt, kovaGetGreType, kovasetGreType,
               "", "GRE tunnel: 0 carries layer 3, 1 layer 2"),
    READ_WRITE(MODE "GREIPAddress", IPAddress, kovaGetGreTunnelIp, kovasetGreTunnelIp,
               "", "GRE: own address in the tunnel"),
    READ_WRITE(MODE "GRESubnetMask", IPAddress, kovaGetGreTunnelIpMask, kovasetGreTunnelIpMask,
               "", "GRE: mask of the tunnel"),
    READ_WRITE(MODE "GREDestIPAddress", IPAddress, kovaGetGreDestIp, kovasetGreDestIp,
               "", "GRE: far end of the tunnel"),
    READ_WRITE(MODE "Apply", Boolean, kovaGetOperModeApply, kovasetOperModeApply,
               "", "Set to 1 to verify that the stored settings fit together; reads empty"),
};
// clang-format on

} // namespace

std::span<const Parameter> wan_rows() {
  return rows;
}

} // namespace kova::model
