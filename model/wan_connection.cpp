#include "model/rows.hpp"

#include <kova/wan.h>

namespace kova::model {
namespace {

// clang-format off
#define GATEWAY    "InternetGatewayDevice."
#define WAN        GATEWAY "WANDevice.1."
#define INTERFACE  WAN "WANCommonInterfaceConfig."
#define LINK       WAN "WANConnectionDevice.1."
#define CONNECTION LINK "WANIPConnection.1."
#define DMZ        WAN "X_KOVA_DMZ."

constexpr Parameter rows[] = {
    READ_ONLY (GATEWAY "LANDeviceNumberOfEntries", UnsignedInt, kovaGetTR069LANDeviceNumberOfEntries,
               "", "Number of LAN devices"),
    READ_ONLY (GATEWAY "WANDeviceNumberOfEntries", UnsignedInt, kovaGetTR069WANDeviceNumberOfEntries,
               "", "Number of WAN devices"),
    READ_ONLY (GATEWAY "ManagementServer.ManageableDeviceNumberOfEntries", UnsignedInt,
               kovaGetTR069ManageableDeviceNumberOfEntries,
               "", "Number of devices that are managed through this one"),

    // The LTE uplink.
    READ_ONLY (WAN "WANConnectionNumberOfEntries", UnsignedInt, kovaGetWANDeviceWANConnectionNumberOfEntries,
               "", "Number of connections of the WAN device"),
    REPORTED  (INTERFACE "EnabledForInternet", Boolean, kovaGetWANDeviceEnabledForInternet,
               "", "Whether the uplink leads to the Internet: always true"),
    READ_ONLY (INTERFACE "WANAccessType", String, kovaGetWANDeviceWANAccessType,
               "", "Kind of the uplink: LTE"),
    READ_ONLY (INTERFACE "Layer1UpstreamMaxBitRate", UnsignedInt, kovaGetWANDeviceLayer1UpstreamMaxBitRate,
               "bit/s", "Highest rate of the uplink's sending side; has a decimal place"),
    READ_ONLY (INTERFACE "Layer1DownstreamMaxBitRate", UnsignedInt, kovaGetWANDeviceLayer1DownstreamMaxBitRate,
               "bit/s", "Highest rate of the uplink's receiving side"),
    READ_ONLY (INTERFACE "PhysicalLinkStatus", String, kovaGetWANDevicePhysicalLinkStatus,
               "", "Up or Down"),
    READ_ONLY (INTERFACE "TotalBytesSent", UnsignedInt, kovaGetWANDeviceTotalBytesSent,
               "bytes", "Sent by the current data interface"),
    READ_ONLY (INTERFACE "TotalBytesReceived", UnsignedInt, kovaGetWANDeviceTotalBytesReceived,
               "bytes", "Received by the current data interface"),
    READ_ONLY (INTERFACE "TotalPacketsSent", UnsignedInt, kovaGetWANDeviceTotalPacketsSent,
               "packets", "Sent by the current data interface"),
    READ_ONLY (INTERFACE "TotalPacketsReceived", UnsignedInt, kovaGetWANDeviceTotalPacketsReceived,
               "packets", "Received by the current data interface"),
    READ_ONLY (INTERFACE "X_KOVA_TotalBytesSent", String, kovaGetWANTotalBytesSent,
               "", "Sent by the LTE interface, with its unit: bytes, KB, MB or GB"),
    READ_ONLY (INTERFACE "X_KOVA_TotalBytesReceived", String, kovaGetWANTotalBytesReceived,
               "", "Received by the LTE interface, with its unit: bytes, KB, MB or GB"),
    READ_ONLY (INTERFACE "X_KOVA_TotalPacketsSent", UnsignedInt, kovaGetWANTotalPacketsSent,
               "packets", "Sent by the LTE interface"),
    READ_ONLY (INTERFACE "X_KOVA_TotalPacketsReceived", UnsignedInt, kovaGetWANTotalPacketsReceived,
               "packets", "Received by the LTE interface"),

    // Its IP connection.
    READ_ONLY (LINK "WANIPConnectionNumberOfEntries", UnsignedInt, kovaGetWANConnectionIPConnectionNumberOfEntries,
               "", "Number of IP connections of the connection"),
    READ_ONLY (CONNECTION "ConnectionStatus", String, kovaGetTR069WANConnectionConnectionStatus,
               "", "Off, Scanning, No Network, Connecting, Connected, Connect error or Scanned"),
    REPORTED  (CONNECTION "ExternalIPAddress", IPAddress, kovaGetWANConnectionExternalIPAddress,
               "", "Address of the management bearer, else of the WAN"),
    READ_ONLY (CONNECTION "X_KOVA_ExternalIPAddress", IPAddress, kovaGetTR069WANConnectionExternalIPAddress,
               "", "The same as ExternalIPAddress"),
    REPORTED  (CONNECTION "SubnetMask", IPAddress, kovaGetWANConnectionSubnetMask,
               "", "Mask of the WAN"),
    REPORTED  (CONNECTION "DefaultGateway", String, kovaGetTR069WANGatewayAddress,
               "", "Gateway of the management connection's interface; empty without one"),
    REPORTED  (CONNECTION "MACAddress", MACAddress, kovaGetTR069WANConnectionMACAddress,
               "", "MAC address of the management connection's interface; empty while LTE is not connected"),
    READ_ONLY (CONNECTION "X_KOVA_ManagementIPAddress", IPAddress, kovaGetTR069WANIPAddress,
               "", "Address of the management connection's interface; empty without one"),
    READ_ONLY (CONNECTION "X_KOVA_ManagementSubnetMask", IPAddress, kovaGetTR069WANSubnetMask,
               "", "Mask of the management connection's interface; a fault without one"),
    READ_WRITE(CONNECTION "MaxMTUSize", UnsignedInt, kovaGetWANConnectionX_MTU, kovaSetWANConnectionX_MTU,
               "bytes", "Largest packet"),

    // Set one by one: refused in router mode, and the host while the DMZ is off.
    READ_WRITE(CONNECTION "X_KOVA_DMZEnable", Boolean, kovaGetWANConnectionDMZEnable, kovaSetWANConnectionDMZEnable,
               "", "Whether the DMZ is on, true or false"),
    READ_WRITE(CONNECTION "X_KOVA_DMZHostIPAddress", IPAddress,
               kovaGetWANConnectionDMZHostIPAddress, kovaSetWANConnectionDMZHostIPAddress,
               "", "Host that receives what no rule claims"),
    READ_WRITE(CONNECTION "X_KOVA_DMZAvoidRemoteManagement", Boolean,
               kovaGetWANConnectionDMZAvoidRemoteManagement, kovaSetWANConnectionDMZAvoidRemoteManagement,
               "", "Whether remote management is kept away from the DMZ, true or false"),
    // The same settings in any operation mode.
    READ_WRITE(DMZ "Enable", Boolean, getTR069DMZEnable, setTR069DMZEnable,
               "", "Whether the DMZ is on, 1 or 0"),
    READ_WRITE(DMZ "HostAddress", IPAddress, getTR069DMZHostAddress, setTR069DMZHostAddress,
               "", "Host that receives what no rule claims"),

    READ_WRITE(WAN "X_KOVA_ALG.SIPEnable", Boolean, kovaGetALGSIPEnable, kovaSetALGSIPEnable,
               "", "Whether SIP is helped through address translation, 1 or 0"),
};
// clang-format on

} // namespace

std::span<const Parameter> wan_connection_rows() {
  return rows;
}

} // namespace kova::model
