#include "model/rows.hpp"

#include <kova/lan.h>

namespace kova::model {
namespace {

// clang-format off
#define DEVICE "InternetGatewayDevice.LANDevice.1."
#define HOSTS  DEVICE "LANHostConfigManagement."
#define PORT   DEVICE "LANEthernetInterfaceConfig.1."
#define LAN    DEVICE "X_KOVA_LAN."

constexpr Parameter rows[] = {
    // Management addresses: each value is judged against the stored ones, and takes effect with X_KOVA_Apply.
    REPORTED  (HOSTS "DHCPServerConfigurable", Boolean, kovaGetTR069DHCPServerConfigurableValue,
               "", "Whether the DHCP server's settings can be changed: always true"),
    READ_WRITE(HOSTS "DHCPServerEnable", Boolean, kovaGetDHCPServerEnableValue, kovasetDHCPServerEnableValue,
               "", "DHCP server: 0 off, 1 on; reads 2 while requests are relayed"),
    READ_ONLY (HOSTS "DHCPRelay", Boolean, kovaGetDHCPRelayValue,
               "", "Whether DHCP requests are relayed"),
    READ_WRITE(HOSTS "MinAddress", IPAddress, kovaGetManagementMinAddressValue, kovasetManagementMinAddressValue,
               "", "First address of the DHCP pool"),
    READ_WRITE(HOSTS "MaxAddress", IPAddress, kovaGetManagementMaxAddressValue, kovasetManagementMaxAddressValue,
               "", "Last address of the DHCP pool"),
    READ_WRITE(HOSTS "SubnetMask", IPAddress, kovaGetManagementSubnetMaskValue, kovasetManagementSubnetMaskValue,
               "", "Mask given to DHCP clients: that of the LAN"),
    READ_WRITE(HOSTS "DHCPLeaseTime", Int, kovaDHCPLeaseTimeValue, kovasetDHCPLeaseTime,
               "s", "Lease time given to DHCP clients, 300 to 172800"),
    READ_ONLY (HOSTS "MACAddress", MACAddress, kovaGetTR069LANMacAddress,
               "", "MAC address of the LAN bridge"),
    READ_WRITE(HOSTS "IPInterface.1.IPInterfaceIPAddress", IPAddress,
               kovaGetIPInterfaceIPAddressValue, kovasetIPInterfaceIPAddressValue,
               "", "LAN address of the router; a new one takes the DHCP pool along"),
    REPORTED  (HOSTS "IPInterface.1.IPInterfaceSubnetMask", IPAddress, kovaGetTR069LANSubnetMask,
               "", "LAN mask of the router"),
    READ_WRITE(HOSTS "X_KOVA_Apply", Boolean, kovaGetDHCPApply, kovasetDHCPApply,
               "", "Set to 1 to make the settings of this object take effect; reads empty"),
    READ_ONLY (HOSTS "X_KOVA_DHCPClients", String, kovaGetTR069DhcpClientStatus,
               "", "Leases given out: four fields joined by a comma, entries joined by a semicolon"),
    READ_ONLY (HOSTS "X_KOVA_LANIPAddress", IPAddress, kovaGetTR069LANIPAddress,
               "", "LAN address of the router"),

    // Set transaction: judged together, stored, and the DHCP server restarted.
    CHECKED   (LAN "IPAddress", IPAddress, getTR069LANIPAddress, setTR069LANIPAddress, chkTR069LANIPAddress,
               "", "LAN address of the router, of a private network; set it together with the pool"),
    CHECKED   (LAN "SubnetMask", IPAddress, getTR069LANSubnetMask, setTR069LANSubnetMask, chkTR069LANSubnetMask,
               "", "LAN mask: 255.255.255.0"),
    CHECKED   (LAN "DHCPServerEnable", UnsignedInt,
               getTR069DHCPServerEnable, setTR069DHCPServerEnable, chkTR069DHCPServerEnable,
               "", "DHCP server: 0 off, 1 on; reads 2 while requests are relayed"),
    CHECKED   (LAN "DHCPPoolStart", IPAddress,
               getTR069DHCPPoolStartIP, setTR069DHCPPoolStartIP, chkTR069DHCPPoolStartIP,
               "", "First address of the DHCP pool"),
    CHECKED   (LAN "DHCPPoolEnd", IPAddress, getTR069DHCPPoolEndIP, setTR069DHCPPoolEndIP, chkTR069DHCPPoolEndIP,
               "", "Last address of the DHCP pool"),
    READ_WRITE(LAN "DHCPLeaseTime", UnsignedInt, getTR069DHCPLeaseTime, setTR069DHCPLeaseTime,
               "s", "Lease time given to DHCP clients, 300 to 172800"),
    CHECKED   (LAN "DNSOption", Boolean, getTR069DnsOption, setTR069DnsOption, chkTR069DnsOption,
               "", "DNS option of the DHCP server, 0 or 1; the store holds the inverse"),
    CHECKED   (LAN "DNSServer1", IPAddress, getTR069Dns1, setTR069Dns1, chkTR069Dns1,
               "", "First DNS server given to clients"),
    CHECKED   (LAN "DNSServer2", IPAddress, getTR069Dns2, setTR069Dns2, chkTR069Dns2,
               "", "Second DNS server given to clients; may be empty"),
    CHECKED   (LAN "DNSServer3", IPAddress, getTR069Dns3, setTR069Dns3, chkTR069Dns3,
               "", "Third DNS server given to clients; may be empty"),

    // Ethernet port.
    READ_WRITE(LAN "Enable", Boolean, getTR069LanEnable, setTR069LanEnable,
               "", "Ethernet port: 0 takes it down, any other text brings it up; reads 1 while it has a link"),
    READ_ONLY (LAN "Status", String, getTR069LanStatus,
               "", "Link of the Ethernet port: Link Up or Link Down"),
    READ_ONLY (LAN "Speed", String, getTR069LanSpeed,
               "Mbit/s", "Speed of the Ethernet port's link, N/A without one"),
    READ_ONLY (DEVICE "LANEthernetInterfaceNumberOfEntries", UnsignedInt, kovaLANEthernetInterfaceNumberOfEntriesValue,
               "", "Number of Ethernet ports"),
    READ_ONLY (DEVICE "LANWLANConfigurationNumberOfEntries", UnsignedInt, kovaLANWLANConfigurationNumberOfEntriesValue,
               "", "Number of WiFi radios"),
    REPORTED  (PORT "Enable", Boolean, kovaGetLANEthernetInterfaceConfigEnableValue,
               "", "Whether the port is enabled: always true"),
    READ_ONLY (PORT "Status", String, kovaGetLANEthernetInterfaceConfigStatusValue,
               "", "State of the port: always up"),
    READ_ONLY (PORT "MACAddress", MACAddress, kovaGetTR069LANEthernetInterfaceConfigMACAddressValue,
               "", "MAC address of the LAN bridge, in which the port is"),
    READ_ONLY (PORT "Stats.BytesSent", UnsignedInt, kovaGetLANEthernetInterfaceConfigStatsBytesSentValue,
               "", "Traffic sent; carries its unit: bytes, KB, MB or GB"),
    READ_ONLY (PORT "Stats.BytesReceived", UnsignedInt, kovaLANEthernetInterfaceConfigStatsBytesReceivedValue,
               "", "Traffic received; carries its unit: bytes, KB, MB or GB"),
    READ_ONLY (PORT "Stats.PacketsSent", UnsignedInt, kovaLANEthernetInterfaceConfigStatsPacketsSentValue,
               "packets", "Packets sent"),
    READ_ONLY (PORT "Stats.PacketsReceived", UnsignedInt, kovaLANEthernetInterfaceConfigStatsPacketsReceivedValue,
               "packets", "Packets received"),
};
// clang-format on

} // namespace

std::span<const Parameter> lan_rows() {
  return rows;
}

} // namespace kova::model
