#include "request/interlocks.hpp"

#include "request/request.hpp"

#include <fnmatch.h>
#include <kova/frame.h>
#include <kova/time.h>

#include <algorithm>

namespace kova::request {
namespace {

struct Interlock {
  std::string pattern;              // of the paths that are closed
  std::string by;                   // the parameter that closes them
  std::vector<std::string> closing; // its values that do
  std::string opening;              // one that opens them
  std::string words;                // for a person
  bool (*closed)() = nullptr;       // in the place of the values
  bool of_primary = false;          // whose switch counts for both management instances
};

const std::string firewall = "InternetGatewayDevice.X_KOVA_Firewall.";
const std::string voice = "InternetGatewayDevice.Services.VoiceService.1.VoiceProfile.1.";
const std::string connection = "InternetGatewayDevice.WANDevice.1.WANConnectionDevice.1.WANIPConnection.1.";
const std::string vpn = "InternetGatewayDevice.WANDevice.1.X_KOVA_OperMode.";
const std::string dhcp = "InternetGatewayDevice.LANDevice.1.LANHostConfigManagement.";
const std::string server = "InternetGatewayDevice.ManagementServer.";
const std::string time_of_day = "InternetGatewayDevice.Time.";
const std::string snmp = "InternetGatewayDevice.X_KOVA_SNMP.";

std::vector<Interlock> all() {
  const std::vector<std::string> off = {"0", "false", ""};
  std::vector<Interlock> found;
  for (const std::string family : {"MAC", "URL", "IP", "IPv6"}) {
    const std::string filter = firewall + family + "Filter.", words = "the " + family + " filter ";
    for (const char *member : {"Mode", "LogEnable", "Black.*", "White.*"})
      found.push_back({filter + member, filter + "Enable", off, "1", words + "is off"});
    found.push_back({filter + "Black.*", filter + "Mode", {"1"}, "0", words + "uses its white list"});
    found.push_back({filter + "White.*", filter + "Mode", {"0"}, "1", words + "uses its black list"});
  }
  for (const char *rows : {"ACL.", "ACL.[0-9]*"})
    found.push_back({firewall + rows, firewall + "ACL.Enable", off, "1", "access control is off"});
  const std::string sip = voice + "SIP.", enable = sip + "X_KOVA_Enable", mode = sip + "X_KOVA_ServerMode";
  for (const std::string &member :
       {sip + "X_KOVA_ServerMode", sip + "X_KOVA_PCSCF*", sip + "Proxy*", sip + "Registrar*",
        sip + "UserAgentDomain", voice + "Line.1.SIP.*", voice + "Line.1.DirectoryNumber"})
    found.push_back({member, enable, {"0", "false"}, "1", "the telephone line is out of service"});
  for (const std::string &member : {sip + "Proxy*", sip + "Registrar*", sip + "UserAgentDomain"})
    found.push_back({member, mode, {"1"}, "0", "the line uses a P-CSCF"});
  found.push_back({sip + "X_KOVA_PCSCF*", mode, {"0"}, "1", "the line uses a proxy"});
  found.push_back(
      {connection + "X_KOVA_DMZHostIPAddress", connection + "X_KOVA_DMZEnable", off, "1", "the DMZ is off"});
  for (const char *member :
       {"IPInterface.1.IPInterfaceIPAddress", "MinAddress", "MaxAddress", "SubnetMask", "DHCPLeaseTime"})
    found.push_back({dhcp + member, dhcp + "DHCPServerEnable", {"0"}, "1", "the DHCP server is off"});
  for (const char *member : {"UserName", "Password"})
    found.push_back({snmp + member, snmp + "Enable", off, "1", "SNMP is off"});
  found.push_back({time_of_day + "DaylightSavings*",
                   time_of_day + "LocalTimeZone",
                   {},
                   "+01:00",
                   "the zone has no daylight saving",
                   [] { return kovaCheckLocalTimeZone() != 0; }});
  found.push_back({server + "PeriodicInformInterval",
                   server + "PeriodicInformEnable",
                   {"0"},
                   "1",
                   "the device does not report periodically",
                   nullptr,
                   /*of_primary=*/true});
  found.push_back({vpn + "*", vpn + "OperMode", {"0", "1", "3"}, "2", "the device is not in its VPN mode"});
  for (const char *member : {"L2TP*", "BCPEnable"})
    found.push_back({vpn + member, vpn + "VPNType", {"1"}, "0", "the VPN is a GRE tunnel"});
  found.push_back({vpn + "GRE*", vpn + "VPNType", {"0", ""}, "1", "the VPN is an L2TP tunnel"});
  for (const char *member : {"VPNNatEnable", "L3VPNDefaultIf"}) {
    found.push_back({vpn + member, vpn + "BCPEnable", {"1"}, "0", "the L2TP tunnel is bridged"});
    found.push_back({vpn + member, vpn + "GREType", {"1"}, "0", "the GRE tunnel carries layer 2"});
  }
  return found;
}

const std::vector<Interlock> &interlocks() {
  static const std::vector<Interlock> table = all();
  return table;
}

bool closes(const Interlock &interlock, const std::string &path) {
  return path != interlock.by && fnmatch(interlock.pattern.c_str(), path.c_str(), 0) == 0;
}

using Given = std::map<std::string, std::string>;

std::string value_of(const std::string &path, const Given *given) {
  if (given)
    if (const auto value = given->find(path); value != given->end()) return value->second;
  const Reading reading = get_values(std::span(&path, 1));
  return reading.values.empty() ? "" : reading.values.front().text;
}

// As the primary management instance sees the device.
class AsPrimary {
public:
  AsPrimary() { gSecondaryInstance = 0; }
  ~AsPrimary() { gSecondaryInstance = instance_; }
  AsPrimary(const AsPrimary &) = delete;
  AsPrimary &operator=(const AsPrimary &) = delete;

private:
  const uint32_t instance_ = gSecondaryInstance;
};

bool is_of_other_instance(const Interlock &interlock) {
  return interlock.of_primary && gSecondaryInstance != 0;
}

bool is_closed(const Interlock &interlock, const Given *given) {
  if (is_of_other_instance(interlock)) { // what this request sets is another switch
    const AsPrimary primary;
    return is_closed(interlock, nullptr);
  }
  if (interlock.closed) return interlock.closed();
  return std::ranges::find(interlock.closing, value_of(interlock.by, given)) != interlock.closing.end();
}

} // namespace

std::optional<std::string> interlock_of(std::string_view path) {
  return interlock_of(path, nullptr);
}

std::optional<std::string> interlock_of(std::string_view path, const Given *given) {
  for (const Interlock &interlock : interlocks()) {
    if (!closes(interlock, std::string(path))) continue;
    if (is_closed(interlock, given) &&
        !interlock_of(interlock.by, given)) // what cannot be turned now is without effect
      return interlock.words + ": set " + interlock.by + "=" + interlock.opening + " first" +
             (is_of_other_instance(interlock) ? ", for the primary management instance" : "");
  }
  return std::nullopt;
}

int interlocks_ahead_of(std::string_view path) {
  int most = 0;
  for (const Interlock &interlock : interlocks())
    if (closes(interlock, std::string(path))) most = std::max(most, 1 + interlocks_ahead_of(interlock.by));
  return most;
}

} // namespace kova::request
