// The rule checker: one row for each value that has a rule.
#include "platform/host/rule_kinds.hpp"
#include "platform/nvram.h"

#include <string_view>
#include <variant>

namespace {

using namespace kova::host;

enum Group : int {
  wifi = 1,
  lan = 3,
  clock_settings = 4,
  management = 7,
  operation_mode = 9,
  dmz = 11,
  data_link = 30,
  sip_alg = 31,
  web_service = 41
};

using Rule = std::variant<Number, OneOf, Text, WpaPassPhrase, Ipv4Address, Ipv4Netmask, ServerAddressOrName,
                          WebUrl, TimeZone>;

struct Row {
  Group group;
  int item;
  Rule rule;
};

constexpr OneOf on_off{"0 1"};
constexpr OneOf zero_or_one{"0 1", bad_value}; // told apart from nothing at all
constexpr Text optional_text{0, 255, printable, bad_value};

constexpr Number number(std::int64_t min, std::int64_t max) {
  return {min, max, empty_value, bad_value};
}
constexpr Number month = number(1, 12), week = number(1, 6), weekday = number(0, 6);
constexpr Number port = number(1, 65535), seconds = number(0, 4294967295);

constexpr Ipv4Address lan_address{Ipv4Address::Of::lan_host};
constexpr Ipv4Address server_address{Ipv4Address::Of::server};
constexpr Ipv4Netmask netmask;

// clang-format off
constexpr Row rows[] = {
    {wifi,            1, on_off},                                                // radio, further networks
    {wifi,            2, OneOf{"BONLY GONLY NONLY BG GN BGN"}},                  // network mode
    {wifi,            3, Number{0, 13}},                                         // channel, 0: automatic
    {wifi,            4, Text{1, 32, printable}},                                // SSID
    {wifi,            7, WpaPassPhrase{}},
    {wifi,           17, Number{0, 12}},                                         // rate, 0: automatic
    {wifi,           19, on_off},                                                // bandwidth, 1: 40 MHz
    {wifi,           24, on_off},                                                // hidden
    {wifi,           25, on_off},                                                // client isolation

    {lan,             8, OneOf{"0 1 2"}},                                        // DHCP off, server, relay
    {lan,             9, lan_address},
    {lan,            10, netmask},
    {lan,            11, lan_address},                                           // pool start
    {lan,            12, lan_address},                                           // pool end
    {lan,            21, Number{300, 172800, /*empty=*/-2, /*outside=*/-1}},     // lease time in seconds
    {lan,            27, on_off},                                                // DNS option
    {lan,            28, server_address},                                        // DNS server

    {clock_settings,  8, zero_or_one},                                           // daylight saving in use
    {clock_settings, 10, ServerAddressOrName{}},                                 // NTP server
    {clock_settings, 11, week},                                                  // start of daylight saving
    {clock_settings, 12, weekday},
    {clock_settings, 13, month},
    {clock_settings, 14, week},                                                  // its end
    {clock_settings, 15, weekday},
    {clock_settings, 16, month},
    {clock_settings, 17, TimeZone{}},

    {management,      2, WebUrl{}},                                              // server
    {management,      3, optional_text},                                         // user there
    {management,      4, optional_text},                                         // password there
    {management,      5, zero_or_one},                                           // periodic inform
    {management,      6, number(1, 4294967295)},                                 // its interval in seconds
    {management,      7, optional_text},                                         // connection request: user
    {management,      8, optional_text},                                         // password
    {management,     13, seconds},                                               // notification limit
    {management,     14, zero_or_one},                                           // STUN
    {management,     15, ServerAddressOrName{/*may_be_empty=*/true}},            // empty: the management server
    {management,     16, port},
    {management,     17, optional_text},                                         // STUN user
    {management,     18, optional_text},                                         // STUN password
    {management,     19, seconds},                                               // longest keep-alive period
    {management,     20, seconds},                                               // shortest
    {management,     21, zero_or_one},                                           // NAT detected
    {management,     22, optional_text},                                         // STUN realm
    {management,     23, zero_or_one},                                           // fingerprint
    {management,     24, optional_text},                                         // cloud key
    {management,     25, optional_text},                                         // nick name

    {operation_mode,  0, Number{0, 3}},
    {operation_mode,  1, OneOf{"0 1"}},                                          // VPN type: L2TP, GRE
    {operation_mode,  2, on_off},                                                // NAT in the VPN
    {operation_mode,  3, on_off},                                                // VPN as the default interface
    {operation_mode,  4, on_off},                                                // bridged L2TP (BCP)
    {operation_mode,  5, Text{1, 63, host_name_character}},                      // L2TP host name
    {operation_mode,  6, ServerAddressOrName{}},                                 // L2TP server
    {operation_mode,  7, Text{1, 63, printable}},                                // PPP user
    {operation_mode,  8, Text{1, 63, printable}},                                // PPP password
    {operation_mode, 10, OneOf{"0 1"}},                                          // GRE of layer 3, of layer 2
    {operation_mode, 11, server_address},                                        // GRE tunnel
    {operation_mode, 12, netmask},
    {operation_mode, 13, server_address},                                        // GRE destination

    {dmz,             1, zero_or_one},
    {dmz,             2, lan_address},                                           // the exposed host

    {data_link,       1, Number{576, 1500}},                                     // MTU

    {sip_alg,         1, zero_or_one},

    {web_service,     1, port},                                                  // of HTTPS
    {web_service,     2, zero_or_one},                                           // HTTPS
};
// clang-format on

constexpr int no_rule = -99;

} // namespace

int tarn_check_param(int group, const char *value, int item) {
  const std::string_view text = value == nullptr ? "" : value;
  for (const Row &row : rows)
    if (row.group == group && row.item == item)
      return std::visit([text](const auto &rule) { return rule.judge(text); }, row.rule);
  tarn_log_console("rules: value refused, there is no rule for item %d of group %d", item, group);
  return no_rule;
}
