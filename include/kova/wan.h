/* wan: the eight APN profiles, the operation mode and the VPN, the WAN connection, DMZ and SIP ALG.
 *
 * An APN profile's leaves live in the configuration tree: a getter answers -1 when the tree or the leaf
 * cannot be read, and "" is a stored empty text. The other settings live in the key/value store. */
#ifndef KOVA_WAN_H
#define KOVA_WAN_H

#include <kova/accessors.h>
#include <stdint.h>

/* The platform's record of the operation mode. */
typedef struct OperMode OperMode;

KOVA_BEGIN_EXPORTS

/* ---- APN profiles -------------------------------------------------------------------------------------- */

/* The accessors of profile n. Setters ask for the APN configuration to be updated (Enable to PDPType, MTU) or
 * for the operation-mode network to be restarted (ApplyTo, BridgeVID, GRE).
 *   Enable             "0" or "1"; profile 1 cannot be disabled: its setter takes "1", and stores nothing
 *   Auth               "1" .. "4"
 *   PDPType            "0" .. "2"
 *   MTU                "576" .. "1500"
 *   ApplyTo            bearer use "0" .. "3", 0 is the data bearer; profile 8 stores any text but the empty one
 *   BridgeVID          VLAN id; the checker takes "0" .. "4094"
 *   GREL2VlanList      VLAN ids separated by blanks; like GREL2UntaggedVlan and the texts, it may be emptied
 * Enable, ApplyTo and BridgeVID take part in the set transaction. */
#define KOVA_APN_PROFILE(n)                                                                                  \
  kova_getter getTR069APN##n##Enable, getTR069APN##n##ProfileName, getTR069APN##n##Name,                     \
      getTR069APN##n##Auth, getTR069APN##n##UserName, getTR069APN##n##Password, getTR069APN##n##PDPType,     \
      getTR069APN##n##MTU, getTR069APN##n##ApplyTo, getTR069APN##n##BridgeVID, getTR069APN##n##GREL2DestIP,  \
      getTR069APN##n##GREL2VlanList, getTR069APN##n##GREL2UntaggedVlan;                                      \
  kova_setter setTR069APN##n##Enable, setTR069APN##n##Name, setTR069APN##n##Auth, setTR069APN##n##UserName,  \
      setTR069APN##n##Password, setTR069APN##n##PDPType, setTR069APN##n##MTU, setTR069APN##n##ApplyTo,       \
      setTR069APN##n##BridgeVID, setTR069APN##n##GREL2DestIP, setTR069APN##n##GREL2VlanList,                 \
      setTR069APN##n##GREL2UntaggedVlan;                                                                     \
  kova_checker chkTR069APN##n##Enable, chkTR069APN##n##ApplyTo, chkTR069APN##n##BridgeVID;
KOVA_APN_PROFILE(1)
KOVA_APN_PROFILE(2)
KOVA_APN_PROFILE(3)
KOVA_APN_PROFILE(4)
KOVA_APN_PROFILE(5)
KOVA_APN_PROFILE(6)
KOVA_APN_PROFILE(7)
KOVA_APN_PROFILE(8)
#undef KOVA_APN_PROFILE

kova_getter getTR069APNMTU; /* MTU of all profiles */
kova_setter setTR069APNMTU;

/* What the cross-profile rules look at. */
typedef struct {
  int32_t enable, apply_to, bridge_vid;
  char gre_l2_vlan_list[144];
} ApnRule;

/* Fills enable, apply_to and bridge_vid of the eight records, profile 1 first. 0, or -1 when a leaf cannot be
 * read. */
int getApnCfgFromNvram(ApnRule records[8]);
/* The rules answer 0 when they hold, else -1. */
int have_data_bear_type(const ApnRule records[8]); /* one of profiles 1 .. 7 is an enabled data bearer */
/* No bearer use twice among enabled profiles, but for 3; for 0 in mode 3 and with layer-2 GRE; mode 1 is
 * free. */
int check_apn_bear_type(const OperMode *opmode, const ApnRule records[8]);
/* In mode 3: no bridge VLAN twice among enabled data bearers. */
int check_vlan_id(const OperMode *opmode, const ApnRule records[8]);
/* With layer-2 GRE: VLAN ids of the data bearers within 10 .. 4094, or 0, and none twice. */
int check_gre_l2_vlan_list(const OperMode *opmode, const ApnRule records[8]);

/* ---- Operation mode and VPN: the data model's parameters ----------------------------------------------- */

/* Getters answer -1 for a missing buffer. Setters store for now and for the next start, and restart the
 * operation-mode network. setTR069WanSettingOperMode stores any text: its checker and the batch validation
 * judge. */
kova_getter getTR069WanSettingOperMode, getTR069WanSettingVPNType, getTR069WanSettingVPNNatEnable,
    getTR069WanSettingBCPEnable, getTR069WanSettingL2TPHostName, getTR069WanSettingL2TPServerIPAddress,
    getTR069WanSettingL2TPUserName, getTR069WanSettingL2TPPassword, getTR069WanSettingGREType,
    getTR069WanSettingGREIPAddress, getTR069WanSettingGRESubnetMask, getTR069WanSettingGREDestIPAddress;
kova_setter setTR069WanSettingOperMode, setTR069WanSettingVPNType, setTR069WanSettingVPNNatEnable,
    setTR069WanSettingBCPEnable, setTR069WanSettingL2TPHostName, setTR069WanSettingL2TPServerIPAddress,
    setTR069WanSettingL2TPUserName, setTR069WanSettingL2TPPassword, setTR069WanSettingGREType,
    setTR069WanSettingGREIPAddress, setTR069WanSettingGRESubnetMask, setTR069WanSettingGREDestIPAddress;
kova_checker chkTR069WanSettingOperMode, chkTR069WanSettingVPNType, chkTR069WanSettingBCPEnable,
    chkTR069WanSettingGREType;

/* ---- Operation mode and VPN: single settings ----------------------------------------------------------- */

/* Setters store without a reaction, and refuse what cannot be written in the current operation mode; the NAT
 * switch and the default interface only with a layer-3 VPN. */
kova_getter kovaGetOperMode, kovaGetVpnType, kovaGetVpnNatEnable, kovaGetL3vpnDefaultIf, kovaGetBcpEnable,
    kovaGetL2tpHostname, kovaGetL2tpLnsIp, kovaGetL2tpPppUser, kovaGetGreType, kovaGetGreTunnelIp,
    kovaGetGreTunnelIpMask, kovaGetGreDestIp;
kova_getter kovaGetL2tpPppPass; /* never the password: always one blank */
kova_setter kovasetOperMode, kovasetVpnType, kovasetVpnNatEnable, kovasetL3vpnDefaultIf, kovasetBcpEnable,
    kovasetL2tpHostname, kovasetL2tpLnsIp, kovasetL2tpPppUser, kovasetL2tpPppPass, kovasetGreType,
    kovasetGreTunnelIp, kovasetGreTunnelIpMask, kovasetGreDestIp;
kova_setter kovasetOperModeApply; /* "1": -1 when the stored settings do not fit together. Applies nothing */
kova_getter kovaGetOperModeApply; /* leaves the buffer as it is */
/* 0, or -1 when a setting that the stored mode needs is missing or wrong. */
int kovaTr069CheckOperModeNvram(void);
int tarnIsL3Vpn(void); /* 1: the stored VPN is a layer-3 one, else 0 */

/* ---- WAN device and connection ------------------------------------------------------------------------- */

/* The LTE uplink is WAN device 1 with connection 1 and IP connection 1: any other index answers -1. */
typedef int kova_wan_device_getter(int dev, char *buf, unsigned int buflen);
typedef int kova_wan_connection_getter(int dev, int conn, char *buf, unsigned int buflen);
typedef int kova_ip_connection_getter(int dev, int conn, int ipconn, char *buf, unsigned int buflen);
typedef int kova_ip_connection_setter(int dev, int conn, int ipconn, const char *value);

kova_getter kovaGetTR069ManageableDeviceNumberOfEntries, kovaGetTR069LANDeviceNumberOfEntries,
    kovaGetTR069WANDeviceNumberOfEntries;
kova_wan_device_getter kovaGetWANDeviceWANConnectionNumberOfEntries, kovaGetWANDeviceEnabledForInternet,
    kovaGetWANDeviceWANAccessType, kovaGetWANDeviceLayer1UpstreamMaxBitRate,
    kovaGetWANDeviceLayer1DownstreamMaxBitRate;
kova_wan_connection_getter kovaGetWANConnectionIPConnectionNumberOfEntries;
kova_getter kovaGetWANDevicePhysicalLinkStatus; /* "Up" or "Down" */
/* Traffic of the current data interface as plain numbers, and of the LTE uplink (byte counts with units,
 * "12 KB"). */
kova_wan_device_getter kovaGetWANDeviceTotalBytesSent, kovaGetWANDeviceTotalBytesReceived,
    kovaGetWANDeviceTotalPacketsSent, kovaGetWANDeviceTotalPacketsReceived;
kova_getter kovaGetWANTotalBytesSent, kovaGetWANTotalBytesReceived, kovaGetWANTotalPacketsSent,
    kovaGetWANTotalPacketsReceived;
kova_getter kovaGetTR069WANConnectionConnectionStatus; /* "Off" .. "Connected" .. "Scanned" */
/* Of the interface over which the management server is reached; "" while there is none. The mask answers
 * -1 then; the MAC address is "" also while not connected. */
kova_getter kovaGetTR069WANConnectionMACAddress, kovaGetTR069WANIPAddress, kovaGetTR069WANSubnetMask,
    kovaGetTR069WANGatewayAddress;
kova_ip_connection_getter kovaGetWANConnectionExternalIPAddress;
kova_getter kovaGetTR069WANConnectionExternalIPAddress, kovaGetWANConnectionSubnetMask;
kova_getter kovaGetWANConnectionX_MTU;
kova_setter kovaSetWANConnectionX_MTU;
/* Writes the name of the interface over which the management server is reached; "" when there is none. */
void _getInfNameOfTr069Conn(char *out, int len);

/* ---- DMZ and SIP ALG ----------------------------------------------------------------------------------- */

/* Switches are "true" and "false"; the first two getters answer -1 while nothing is stored. The first two
 * setters are refused in router mode, and the host while the DMZ is off. Every accepted setting is
 * announced to the firewall. */
kova_ip_connection_getter kovaGetWANConnectionDMZEnable, kovaGetWANConnectionDMZHostIPAddress,
    kovaGetWANConnectionDMZAvoidRemoteManagement;
kova_ip_connection_setter kovaSetWANConnectionDMZEnable, kovaSetWANConnectionDMZHostIPAddress,
    kovaSetWANConnectionDMZAvoidRemoteManagement;
/* The same settings as stored ("1", "0"), in any operation mode; the NAT service of the VPN mode is
 * restarted. */
kova_getter getTR069DMZEnable, getTR069DMZHostAddress;
kova_setter setTR069DMZEnable, setTR069DMZHostAddress;
kova_getter kovaGetALGSIPEnable;
kova_setter kovaSetALGSIPEnable;     /* "0" or "1" */
int _notifyFirewallNatChanged(void); /* announces changed NAT settings; always 0 */

KOVA_END_EXPORTS

#endif
