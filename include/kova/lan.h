/* lan: LAN addressing, the DHCP server, DNS servers for clients, the Ethernet port, and WiFi.
 *
 * Two families of accessors serve the same settings. The "TR069" ones take part in the set transaction:
 * the checker parks the value, the combination is judged by the batch validation, the setter stores it and
 * restarts the DHCP server. The "kova" ones judge each value against the stored settings by themselves,
 * and restart nothing: that is left to kovasetDHCPApply. Addresses and masks are dotted quads. */
#ifndef KOVA_LAN_H
#define KOVA_LAN_H

#include <kova/accessors.h>

KOVA_BEGIN_EXPORTS

/* ---- LAN address, DHCP server and pool: set transaction ------------------------------------------------ */
kova_getter getTR069LANIPAddress;
kova_checker chkTR069LANIPAddress; /* an address of a private network */
kova_setter setTR069LANIPAddress;
kova_getter getTR069LANSubnetMask;
kova_checker chkTR069LANSubnetMask; /* 255.255.255.0 and no other */
kova_setter setTR069LANSubnetMask;
kova_getter getTR069DHCPServerEnable;  /* "0" off, "1" server, "2" relay */
kova_checker chkTR069DHCPServerEnable; /* "0" or "1" */
kova_setter setTR069DHCPServerEnable;
kova_getter getTR069DHCPPoolStartIP, getTR069DHCPPoolEndIP;
kova_checker chkTR069DHCPPoolStartIP, chkTR069DHCPPoolEndIP;
kova_setter setTR069DHCPPoolStartIP, setTR069DHCPPoolEndIP;
kova_getter getTR069DHCPLeaseTime; /* seconds */
kova_setter setTR069DHCPLeaseTime; /* 300 .. 172800; has no checker, the setter judges */

/* ---- DNS servers given to clients: set transaction ----------------------------------------------------- */
kova_getter getTR069DnsOption; /* "1" or "0"; the store holds the inverse */
kova_checker chkTR069DnsOption;
kova_setter setTR069DnsOption;
kova_getter getTR069Dns1, getTR069Dns2, getTR069Dns3;
kova_checker chkTR069Dns1, chkTR069Dns2, chkTR069Dns3; /* the second and third may be "", not NULL */
kova_setter setTR069Dns1, setTR069Dns2, setTR069Dns3;

/* ---- Management addresses: judged one by one ----------------------------------------------------------- */
kova_getter kovaGetTR069DHCPServerConfigurableValue; /* always "true" */
kova_getter kovaGetDHCPServerEnableValue;
kova_setter kovasetDHCPServerEnableValue; /* relay (2) is refused */
kova_getter kovaGetDHCPRelayValue;        /* "1" while the DHCP mode is relay, else "0" */
kova_getter kovaGetManagementMinAddressValue, kovaGetManagementMaxAddressValue; /* the pool's bounds */
/* The next four are refused while the DHCP server is off. The pool must stay in the LAN network, in order,
 * and clear of the router's own address. */
kova_setter kovasetManagementMinAddressValue, kovasetManagementMaxAddressValue;
kova_getter kovaGetManagementSubnetMaskValue;
kova_setter kovasetManagementSubnetMaskValue;
kova_getter kovaDHCPLeaseTimeValue; /* seconds */
kova_setter kovasetDHCPLeaseTime;   /* 300 .. 172800 */
kova_getter kovaGetIPInterfaceIPAddressValue;
/* Moves the LAN and its pool. A move to another network switches off and empties the DMZ, port forwarding
 * and port filter rules, even when the address is then refused for meeting a pool bound. Refused while the
 * DHCP server is off. */
kova_setter kovasetIPInterfaceIPAddressValue;
kova_getter kovaGetTR069LANIPAddress, kovaGetTR069LANSubnetMask;
kova_getter kovaGetTR069LANMacAddress; /* of the LAN bridge, "00:1A:2B:3C:4D:5E"; "" without one */
kova_setter kovasetDHCPApply;          /* exactly "1": announces the changed LAN; up to 6 seconds */
kova_getter kovaGetDHCPApply;          /* leaves the buffer as it is */
/* Leases as "a,b,c,d" entries joined by ";", fields in the order of the lease file; up to 4095 characters. */
kova_getter kovaGetTR069DhcpClientStatus;

/* ---- Ethernet port ------------------------------------------------------------------------------------- */
kova_getter getTR069LanEnable; /* "1" while the port has a link, else "0" */
kova_setter setTR069LanEnable; /* exactly "0" takes the port down, any other text brings it up */
kova_getter getTR069LanStatus; /* "Link Up" or "Link Down" */
kova_getter getTR069LanSpeed;  /* Mbit/s, or "N/A" */
kova_getter kovaLANEthernetInterfaceNumberOfEntriesValue, kovaLANWLANConfigurationNumberOfEntriesValue;
kova_getter kovaGetLANEthernetInterfaceConfigEnableValue; /* always "true" */
kova_getter kovaGetLANEthernetInterfaceConfigStatusValue; /* always "up" */
kova_getter kovaGetTR069LANEthernetInterfaceConfigMACAddressValue;
/* Traffic counters; byte counts carry a unit ("12 KB"). */
kova_getter kovaGetLANEthernetInterfaceConfigStatsBytesSentValue;
kova_getter kovaLANEthernetInterfaceConfigStatsBytesReceivedValue;
kova_getter kovaLANEthernetInterfaceConfigStatsPacketsSentValue;
kova_getter kovaLANEthernetInterfaceConfigStatsPacketsReceivedValue;

/* ---- WiFi radio ---------------------------------------------------------------------------------------- */

/* Every setter restarts the WiFi service. Mode, rate and bandwidth take part in the set transaction: only
 * some go together; their setters refuse only the empty text. */
kova_getter getTR069WifiEnable;
kova_setter setTR069WifiEnable;
kova_getter getTR069WifiMode, getTR069WifiRate, getTR069WifiBandwidth;
kova_checker chkTR069WifiMode;      /* network mode, as "GONLY" */
kova_checker chkTR069WifiRate;      /* rate index "0" .. "12" */
kova_checker chkTR069WifiBandwidth; /* "0" or "1" */
kova_setter setTR069WifiMode, setTR069WifiRate, setTR069WifiBandwidth;
kova_getter getTR069WifiChannel;
kova_setter setTR069WifiChannel;

/* ---- WiFi networks: the main one (0) and three further ones -------------------------------------------- */

/* Encryption is "OPEN", "WPA", "WPA2" or "WPAWPA2". A device list has an entry for each associated station,
 * "address,association id,wireless mode,transmit bandwidth,receive bandwidth", joined by ";", up to 1022
 * characters; each field keeps the driver's leading blank. Without a station file, or with an empty one, the
 * buffer is left as it is. */
#define KOVA_WIFI_NETWORK(n)                                                                                 \
  kova_getter getTR069WifiAPIsolate##n, getTR069WifiEncryption##n, getTR069WifiPassPhrase##n,                \
      getTR069WifiDeviceList##n;                                                                             \
  kova_setter setTR069WifiAPIsolate##n, setTR069WifiEncryption##n, setTR069WifiPassPhrase##n;
#define KOVA_FURTHER_WIFI_NETWORK(n)                                                                         \
  KOVA_WIFI_NETWORK(n)                                                                                       \
  kova_getter getTR069WifiMutiSSID##n, getTR069WifiMutiStatus##n, getTR069WifiMutiHideSSID##n;               \
  kova_setter setTR069WifiMutiSSID##n, setTR069WifiMutiStatus##n, setTR069WifiMutiHideSSID##n;
KOVA_WIFI_NETWORK(0)
kova_getter getTR069WifiSSID0, getTR069WifiHideSSID0;
kova_setter setTR069WifiSSID0, setTR069WifiHideSSID0;
KOVA_FURTHER_WIFI_NETWORK(1)
KOVA_FURTHER_WIFI_NETWORK(2)
KOVA_FURTHER_WIFI_NETWORK(3)
#undef KOVA_WIFI_NETWORK
#undef KOVA_FURTHER_WIFI_NETWORK

KOVA_END_EXPORTS

#endif
