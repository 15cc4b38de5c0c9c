// The lists of the device, and their rows by path.
#include "model/model.hpp"

#include <kova/accounts.h>
#include <kova/voice.h>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <vector>

namespace kova::model {
namespace {

// clang-format off
#define FIREWALL "InternetGatewayDevice.X_KOVA_Firewall."
#define OPERATION(function) {#function, &(function)}
// What most lists have in common: rows beyond the last read as "", and the device sees 255 characters of all rows.
#define RULES(object, add, set, get, remove, meaning) \
  {object ".{i}.Rule", OPERATION(get), OPERATION(add), OPERATION(set), OPERATION(remove), \
   nullptr, true, 255, "", meaning}
#define FILTER(family, list, add, set, get, remove, condition) \
  RULES(FIREWALL family "Filter." list, add, set, get, remove, condition "; editable while the filter is on")

constexpr RowList all[] = {
    {"InternetGatewayDevice.Layer3Forwarding.X_KOVA_Route.{i}.Rule", OPERATION(kovaGetXRouteRulesRule),
     OPERATION(kovaAddXRouteRulesRule), OPERATION(kovaSetXRouteRulesRule), OPERATION(kovaDelXRouteRulesRule),
     &RouteSetting_getErrStr, false, 0, "", "Static route \"gateway,network,mask,type\"; type 0 through the gateway, 1 direct"},
    RULES("InternetGatewayDevice.Services.VoiceService.1.VoiceProfile.1.Line.1.X_KOVA_SpeedDial",
          kovaaddQuickdialRule, kovaSetQuickdialRule, kovaGetQuickdialRule, kovadelQuickdialRule,
          "Short number \"dial number,real number,note\"; dial number 1 to 16"),
    {"InternetGatewayDevice.TraceRouteDiagnostics.RouteHops.{i}.HopHost", OPERATION(kovaGetDiagnosticsRouteHopsHopHost),
     {}, {}, {}, nullptr, false, 0, "", "Host of a hop of the last traceroute"},
    RULES(FIREWALL "ACL", kovaaddACLSettings, kovaSetACLSettingsRules, kovaGetACLSettingsRules, kovadelACLSettings,
          "Access \"service,first,last,interface\"; service 4, 7 or 8, interface 0 WAN or 1 LAN"),
    FILTER("IP", "Black", kovaaddIPBlackFilterSetting, kovaSetIPBlackFilterRules, kovaGetIPFilterRules,
           kovadelIPBlackFilterSetting, "IPv4 packets that do not pass in mode 0, ten fields joined by commas"),
    FILTER("IP", "White", kovaaddIPWhiteFilterSetting, kovaSetIPWhiteFilterRules, kovaGetIPFilterWhiteRules,
           kovadelIPWhiteFilterSetting, "IPv4 packets that alone pass in mode 1, ten fields joined by commas"),
    FILTER("IPv6", "Black", kovaaddIPV6BlackFilterSetting, kovaSetIPV6BlackFilterRules, kovaGetIPV6FilterRules,
           kovadelIPV6BlackFilterSetting, "IPv6 packets that do not pass in mode 0, ten fields joined by commas"),
    FILTER("IPv6", "White", kovaaddIPV6WhiteFilterSetting, kovaSetIPV6WhiteFilterRules, kovaGetIPV6FilterWhiteRules,
           kovadelIPV6WhiteFilterSetting, "IPv6 packets that alone pass in mode 1, ten fields joined by commas"),
    FILTER("MAC", "Black", kovaaddMACBlackFilterSetting, kovaSetMACBlackFilterRules, kovaGetMACFilterRules,
           kovadelMACBlackFilterSetting, "MAC address that does not pass in mode 0"),
    FILTER("MAC", "White", kovaaddMACWhiteFilterSetting, kovaSetMACWhiteFilterRules, kovaGetMACFilterWhiteRules,
           kovadelMACWhiteFilterSetting, "MAC address that alone passes in mode 1"),
    FILTER("URL", "Black", kovaaddURLBlackFilterSetting, kovaSetURLBlackFilterRules, kovaGetURLFilterRules,
           kovadelURLBlackFilterSetting, "URL, or a part of it, that does not pass in mode 0"),
    FILTER("URL", "White", kovaaddURLWhiteFilterSetting, kovaSetURLWhiteFilterRules, kovaGetURLFilterWhiteRules,
           kovadelURLWhiteFilterSetting, "URL, or a part of it, that alone passes in mode 1"),
};
// clang-format on

} // namespace

std::string_view RowList::object() const {
  return path.substr(0, path.find("{i}"));
}

std::string_view RowList::member() const {
  return path.substr(object().size() + std::string_view("{i}.").size());
}

std::string RowList::instance(int index) const {
  return std::string(object()) + std::to_string(index) + ".";
}

std::optional<std::string> RowList::read(int index) const {
  constexpr unsigned int room = 255;
  char row[room + 1] = {};
  if (get.call(index, row, room) != 0 || (empty_is_end && *row == '\0')) return std::nullopt;
  return row;
}

std::vector<std::string> RowList::rows() const {
  std::vector<std::string> found;
  while (const auto row = read(static_cast<int>(found.size()) + 1))
    found.push_back(*row);
  return found;
}

std::span<const RowList> lists() {
  return all;
}

const RowList *find_list(std::string_view object) {
  const auto *found = std::ranges::find(all, object, &RowList::object);
  return found != std::end(all) ? found : nullptr;
}

std::optional<RowName> row_at(std::string_view path) {
  for (const RowList &list : all) {
    if (!path.starts_with(list.object())) continue;
    const std::string_view rest = path.substr(list.object().size());
    RowName name{&list, 0, false};
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), name.index);
    if (error != std::errc() || name.index < 1 || rest[0] == '0') return std::nullopt;
    const std::string_view tail(end, rest.data() + rest.size());
    name.is_branch = tail == ".";
    if (name.is_branch || (tail.starts_with('.') && tail.substr(1) == list.member())) return name;
  }
  return std::nullopt;
}

} // namespace kova::model
