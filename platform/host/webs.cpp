// Address and radio rules that the device's web pages share with the data model.
#include "platform/webs.h"

#include "platform/host/complaints.hpp"
#include "platform/host/ipv4.hpp"
#include "platform/host/lan.hpp"
#include "platform/host/text_of.hpp"
#include "platform/host/whole_number.hpp"

#include <string>
#include <string_view>

using kova::host::complained;
using kova::host::parse_quad;
using kova::host::QuadFault;
using kova::host::text_of;

namespace {

constexpr int compatible = 0, incompatible = -1;

// What the radio speaks in a network mode.
struct RadioMode {
  std::string_view name;
  bool b, g, n;
};

constexpr RadioMode radio_modes[] = {
    {"BONLY", true, false, false}, {"GONLY", false, true, false}, {"NONLY", false, false, true},
    {"BG", true, true, false},     {"GN", false, true, true},     {"BGN", true, true, true},
};

const RadioMode *find_radio_mode(const char *name) {
  for (const RadioMode &mode : radio_modes)
    if (mode.name == text_of(name)) return &mode;
  return nullptr;
}

// A host of the network other than the router, the network itself and the broadcast address.
bool is_lan_client(uint32_t address) {
  const kova::host::Lan lan = kova::host::stored_lan();
  const uint32_t host = address & ~lan.mask;
  return lan.holds(address) && address != lan.router && host != 0 && host != ~lan.mask;
}

} // namespace

uint32_t websIP2Num(const char *ip) {
  return parse_quad(text_of(ip)).address;
}

int webscheckSameSubnet(const char *ip, const char *mask, const char *other) {
  const auto one = parse_quad(text_of(ip)), under = parse_quad(text_of(mask)),
             two = parse_quad(text_of(other));
  const bool judgeable =
      one.fault == QuadFault::none && under.fault == QuadFault::none && two.fault == QuadFault::none;
  if (judgeable && ((one.address ^ two.address) & under.address) == 0) return 1;
  return complained(
      0, {text_of(ip), " and ", text_of(other), " are not in one network of mask ", text_of(mask)});
}

int webscheckIpStartEnd(const char *start, const char *end) {
  const auto first = parse_quad(text_of(start)), last = parse_quad(text_of(end));
  const bool judgeable = first.fault == QuadFault::none && last.fault == QuadFault::none;
  if (judgeable && first.address <= last.address) return 1;
  return complained(0, {text_of(start), " to ", text_of(end), " is no range of IPv4 addresses"});
}

int CheckRFModeAndBW(const char *mode, const char *bandwidth) {
  const RadioMode *radio = find_radio_mode(mode);
  const bool wide = text_of(bandwidth) == "1"; // 40 MHz came with 802.11n
  if (!wide || radio == nullptr || radio->n) return compatible;
  return complained(incompatible, {radio->name, " does not go with a bandwidth of 40 MHz"});
}

int CheckRFModeAndRate(const char *mode, const char *rate) {
  constexpr int automatic = 0, last_of_b = 4, last = 12;
  const RadioMode *radio = find_radio_mode(mode);
  const int index = kova::host::whole_number<int>(text_of(rate)).value_or(-1);
  if (index == automatic) return compatible;
  const bool known = radio != nullptr && index > automatic && index <= last;
  if (known && (index <= last_of_b ? radio->b : radio->g || radio->n)) return compatible;
  return complained(incompatible, {text_of(mode), " does not go with rate ", text_of(rate)});
}

int webscheckScanMode(const char *code, const char *duplex) {
  constexpr int valid = 0, bad_mode = -1, bad_duplex = -2;
  const std::string_view mode = text_of(code), type = text_of(duplex);
  if (mode.size() != 1 || mode < "1" || mode > "4")
    return complained(bad_mode, {"\"", mode, "\" is no scan mode: 1 to 4 are"});
  if (type == "FDD" || type == "TDD") return valid;
  return complained(bad_duplex, {"the duplex mode \"", type, "\" is neither FDD nor TDD"});
}

int checkDMZParam(const char *ip) {
  const auto host = parse_quad(text_of(ip));
  const bool fits =
      host.fault == QuadFault::none && kova::host::is_private(host.address) && is_lan_client(host.address);
  return fits ? 0 : complained(-1, {"\"", text_of(ip), "\" is not the address of another host of the LAN"});
}
