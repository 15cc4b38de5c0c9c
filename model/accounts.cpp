#include "model/rows.hpp"

#include <kova/accounts.h>

namespace kova::model {
namespace {

// clang-format off
#define WEB        "InternetGatewayDevice.UserInterface."
#define SNMP       "InternetGatewayDevice.X_KOVA_SNMP."
#define WATCHDOG   "InternetGatewayDevice.X_KOVA_PingWatchdog."
#define PING       "InternetGatewayDevice.IPPingDiagnostics."
#define TRACEROUTE "InternetGatewayDevice.TraceRouteDiagnostics."

#define WATCH(name, type, unit, meaning) \
    READ_WRITE(WATCHDOG #name, type, getTR069PingWatchdog##name, setTR069PingWatchdog##name, unit, meaning)

constexpr Parameter rows[] = {
    READ_WRITE(WEB "X_KOVA_AdminPassword", String, kovaGetAdminPassword, kovaSetAdminPassword,
               "", "Password of the administrator; reads empty"),
    READ_WRITE(WEB "X_KOVA_UserPassword", String, kovaGetUserPassword, kovaSetUserPassword,
               "", "Password of the user, with digit, upper-case and lower-case letter and symbol; reads as a blank"),
    READ_WRITE(WEB "X_KOVA_LockTime", UnsignedInt, kovaGetWebLockTimeSettings, kovaSetWebLockTimeSettings,
               "s", "How long an idle login lasts, 300 to 65535"),

    READ_WRITE(SNMP "Enable", Boolean, kovaGetSNMPEnable, kovaSetSNMPEnable, "", "Whether the SNMP service is on"),
    READ_WRITE(SNMP "UserName", String, kovaGetSNMPUserName, kovaSetSNMPUserName,
               "", "User name; set while the service is on"),
    READ_WRITE(SNMP "Password", String, kovaGetSNMPPassword, kovaSetSNMPPassword,
               "", "Password; set while the service is on; reads as a blank"),

    WATCH(Enable, Boolean, "", "Whether the device restarts when a host does not answer; 0 and empty are off"),
    WATCH(IPAddress, String, "", "Host that is pinged"),
    WATCH(Timeout, String, "", "How long to wait for an answer"),
    WATCH(Count, String, "", "Pings of one look"),
    WATCH(FailureCountToReboot, String, "", "Failed looks after which the device restarts"),

    // They judge a value and store nothing: an agent asks before it sets the test's own parameter.
    TRIGGER(PING "X_KOVA_HostCheck", String, kovasetDiagnosticsHost, "", "Refuses what is no host; stores nothing"),
    TRIGGER(PING "X_KOVA_InterfaceCheck", String, kovasetIPingInterface,
            "", "Refuses what is no interface; stores nothing"),
    TRIGGER(TRACEROUTE "X_KOVA_HostCheck", String, kovasetTraceRouteDiagnosticsHost,
            "", "Refuses what is no host; stores nothing"),
    TRIGGER(TRACEROUTE "X_KOVA_InterfaceCheck", String, kovasetTraceRouteDiagnosticsInterface,
            "", "Refuses what is no interface; stores nothing"),
};
// clang-format on

} // namespace

std::span<const Parameter> accounts_rows() {
  return rows;
}

} // namespace kova::model
