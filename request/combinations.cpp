#include "request/combinations.hpp"

#include <arpa/inet.h>
#include <kova/frame.h>
#include <kova/wan.h>

#include <algorithm>
#include <cstdlib>

namespace kova::request {
namespace {

const std::string lan = "InternetGatewayDevice.LANDevice.1.X_KOVA_LAN.";
const std::string apn = "InternetGatewayDevice.WANDevice.1.X_KOVA_APN.";

// The values as the request would leave them.
class Values {
public:
  explicit Values(std::span<const Assignment> request) : request_(request) {}
  bool has(const std::string &path) const { return given(path) != request_.end(); }
  std::string operator[](const std::string &path) const {
    if (const auto at = given(path); at != request_.end()) return at->value;
    const Reading reading = get_values(std::span(&path, 1));
    return reading.values.empty() ? "" : reading.values.front().text;
  }

private:
  std::span<const Assignment>::iterator given(const std::string &path) const {
    return std::ranges::find(request_, path, &Assignment::path);
  }
  std::span<const Assignment> request_;
};

std::string broken_lan(const Values &values) {
  const std::string address = values[lan + "IPAddress"], mask = values[lan + "SubnetMask"],
                    dhcp = values[lan + "DHCPServerEnable"], first = values[lan + "DHCPPoolStart"],
                    last = values[lan + "DHCPPoolEnd"];
  const std::string pool = "the DHCP pool " + first + " to " + last;
  if (dhcp == "2") return "DHCP relay cannot be set";
  if (IPRangeCheck(address.c_str(), mask.c_str(), first.c_str(), last.c_str()) == 0)
    return pool + " is not in the network of " + address + "/" + mask;
  const auto number = [](const std::string &text) { return ntohl(inet_addr(text.c_str())); };
  if (number(first) > number(last)) return pool + " ends before it begins";
  return pool + " begins or ends with the router's own address";
}

std::string broken_dns(const Values &values) {
  const std::string first = values[lan + "DNSServer1"], second = values[lan + "DNSServer2"],
                    third = values[lan + "DNSServer3"];
  const auto repeated = first == second || first == third ? first : second;
  return repeated.empty() ? "one server at least is needed" : "the server " + repeated + " is there twice";
}

std::string broken_bearers(const Values &values) {
  ApnRule profiles[8] = {};
  for (int i = 0; i < 8; ++i) {
    const std::string profile = apn + std::to_string(i + 1) + ".";
    const auto number = [&](const char *name) { return std::atoi(values[profile + name].c_str()); };
    profiles[i].enable = number("Enable");
    profiles[i].apply_to = number("ApplyTo");
    profiles[i].bridge_vid = number("BridgeVID");
  }
  if (have_data_bear_type(profiles) != 0)
    return "one of the profiles 1 to 7 must be enabled for data (ApplyTo 0)";
  for (int i = 0; i < 8; ++i)
    for (int j = i + 1; j < 8; ++j)
      if (profiles[i].enable == 1 && profiles[j].enable == 1 &&
          profiles[i].apply_to == profiles[j].apply_to && profiles[i].apply_to != 3)
        return "the profiles " + std::to_string(i + 1) + " and " + std::to_string(j + 1) +
               " are both enabled with ApplyTo " + std::to_string(profiles[i].apply_to);
  return "two enabled data profiles have the same bridge VLAN";
}

} // namespace

std::string broken_combination(std::span<const Assignment> request, const std::string &path) {
  const Values values(request);
  if (path.starts_with(lan + "DNS")) return broken_dns(values);
  if (path.starts_with(lan)) return broken_lan(values);
  if (path.starts_with(apn) || path.find(".X_KOVA_WANSetting.") != std::string::npos)
    return broken_bearers(values);
  if (path.find("Diagnostics.") != std::string::npos) return "DiagnosticsState takes Requested";
  return "";
}

} // namespace kova::request
