#include "model/rows.hpp"

#include <kova/security.h>

namespace kova::model {
namespace {

// clang-format off
#define FIREWALL "InternetGatewayDevice.X_KOVA_Firewall."
#define FILTER(family, name) \
    READ_WRITE(FIREWALL family "Filter.Enable", Boolean, \
               kovaGet##name##FilteringBasicSettingEnableValue, kovaset##name##FilteringBasicSettingEnableValue, \
               "", "Whether the " family " filter is on"), \
    READ_WRITE(FIREWALL family "Filter.Mode", UnsignedInt, \
               kovaGet##name##FilteringBasicSettingModeValue, kovaset##name##FilteringBasicSettingModeValue, \
               "", "0: all but the black list pass, 1: only the white list; set while the filter is on"), \
    READ_WRITE(FIREWALL family "Filter.LogEnable", Boolean, \
               kovaGet##name##FilteringBasicSettingLogEnableValue, kovaset##name##FilteringBasicSettingLogEnableValue, \
               "", "Whether what is dropped is logged; set while the filter is on")

constexpr Parameter rows[] = {
    FILTER("MAC", Mac),
    FILTER("URL", Url),
    FILTER("IP", Ip),
    FILTER("IPv6", Ipv6),
    TRIGGER   (FIREWALL "MACFilter.Apply", Boolean, kovasetMacApply, "", "1 has the firewall read the MAC filter"),
    TRIGGER   (FIREWALL "URLFilter.Apply", Boolean, kovasetUrlApply, "", "1 has the firewall read the URL filter"),
    READ_WRITE(FIREWALL "IPFilter.Apply", Boolean, kovaGetIpApply, kovasetIpApply,
               "", "1 has the firewall read the IP filter; reads empty"),
    READ_WRITE(FIREWALL "IPv6Filter.Apply", Boolean, kovaGetIpv6Apply, kovasetIpv6Apply,
               "", "1 has the firewall read the IPv6 filter; reads empty"),
    TRIGGER   (FIREWALL "ACL.Apply", Boolean, kovasetACLApply, "", "1 has the firewall read the access control list"),

    READ_WRITE(FIREWALL "SecurityLevel", UnsignedInt,
               kovaGetSystemSecuritySettingsSecurityLevel, kovasetSystemSecuritySettingsSecurityLevel,
               "", "0 none, 1 medium, 2 high, 3 the custom choice of the four switches"),
    READ_WRITE(FIREWALL "ACL.Enable", Boolean,
               kovaGetSystemSecuritySettingsACLValue, kovasetSystemSecuritySettingsACLValue,
               "", "Whether access to the device is controlled; a set makes the security level custom"),
    READ_WRITE(FIREWALL "SPIEnable", Boolean,
               kovaGetSystemSecuritySettingsSPIFirewallValue, kovasetSystemSecuritySettingsSPIFirewallValue,
               "", "Stateful inspection; a set makes the security level custom"),
    READ_WRITE(FIREWALL "BlockPortScan", Boolean,
               kovaGetSecuritySettingsBlockPortScanValue, kovasetSecuritySettingsBlockPortScanValue,
               "", "Whether port scans are blocked; a set makes the security level custom"),
    READ_WRITE(FIREWALL "BlockSynFlood", Boolean,
               kovaGetSystemSecuritySettingsBlockSynFloodValue, kovasetSystemSecuritySettingsBlockSynFloodValue,
               "", "Whether SYN floods are blocked; a set makes the security level custom"),
    READ_WRITE("InternetGatewayDevice.UserInterface.X_KOVA_WANLoginEnable", Boolean,
               kovaGetWebLoginEnable, kovasetWebLoginEnable,
               "", "Whether one can log in from the WAN; takes effect at once"),

    // The device keeps its static routes in a table of its own form.
    READ_ONLY ("InternetGatewayDevice.Layer3Forwarding.X_KOVA_RouteNumberOfEntries", UnsignedInt,
               kovaGetXRouteRulesNumberOfEntries, "", "Number of static routes"),
};
// clang-format on

} // namespace

std::span<const Parameter> security_rows() {
  return rows;
}

} // namespace kova::model
