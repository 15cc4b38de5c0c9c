// The rule checker: one row for each value that has a rule.
#include "platform/host/address_kinds.hpp"
#include "platform/host/characters.hpp"
#include "platform/host/composed_kinds.hpp"
#include "platform/host/ipv6.hpp"
#include "platform/host/rule_kinds.hpp"
#include "platform/host/whole_number.hpp"
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
  web_service = 41,

  mac_filter = 13,
  url_filter = 15,
  access_control = 16,
  ip_filter = 17,
  ipv6_filter = 18,
  static_route = 19,
  diagnostics_host = 21,
  snmp = 24,
  sip = 26,
  telephone_line = 27,
  codec = 28,
  speed_dial = 29
};

// An SNMP credential of at most 32 characters: a wrong length is told from wrong characters.
struct Credential {
  std::size_t shortest;
  int judge(std::string_view value) const {
    constexpr std::size_t longest = 32;
    if (value.size() < shortest || value.size() > longest) return -1;
    return Text{0, longest, visible_in_list, bad_value}.judge(value);
  }
};

// A whole number of either sign.
struct SignedNumber {
  int min, max;
  int judge(std::string_view value) const {
    if (value.empty()) return empty_value;
    const auto number = whole_number<int>(value);
    return number && *number >= min && *number <= max ? accepted : bad_value;
  }
};

// Where a diagnostics test can be led: to an address of either family, this device's own too, or to a name.
struct TestHost {
  int judge(std::string_view value) const {
    const bool is_address = parse_ipv6(value) || DottedQuad{}.judge(value) == accepted;
    return is_address ? accepted : ServerAddressOrName{}.judge(value);
  }
};

using Rule =
    std::variant<Number, OneOf, Text, WpaPassPhrase, Ipv4Address, Ipv4Netmask, ServerAddressOrName, WebUrl,
                 TimeZone, MacAddress, DottedQuad, RouteDestination, RouteNetmask, AccessHost, Sized<Text>,
                 Sized<Number>, Sized<AnyServer>, Optional<OneOf>, Credential, SignedNumber, TestHost>;

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

constexpr Number optional_port{1, 65535, accepted, bad_value};
constexpr OneOf codec_name{"G711U G711A G722 G723 G726 G729 AMR AMR-WB", bad_value};
constexpr Number rtp_port = number(1024, 65535);
constexpr Sized<Number> sip_port{5, port};
constexpr Sized<AnyServer> sip_server{64, {}};
constexpr Sized<Text> sip_text(CharacterClass allowed) {
  return {64, {1, 64, allowed}};
}

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
    {management,     49, optional_text},                                         // registration with spectrum access
    {management,     50, SignedNumber{-137, 47}},                                // granted EIRP, dBm/MHz
    {management,     51, number(0, 7000000000)},                                 // granted frequencies, Hz: from
    {management,     52, number(0, 7000000000)},                                 // to
    {management,     53, SignedNumber{-137, 47}},                                // granted power density, dBm/MHz
    {management,     54, OneOf{"0 1 2", bad_value}},                             // single or multiple registration step
    {management,     55, optional_text},                                         // expiry of the transmission

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

    {mac_filter,      1, zero_or_one},                                           // on
    {mac_filter,      2, zero_or_one},                                           // mode: black list, white list
    {mac_filter,      3, zero_or_one},                                           // log what is dropped
    {mac_filter,      4, MacAddress{}},
    {url_filter,      1, zero_or_one},
    {url_filter,      2, zero_or_one},
    {url_filter,      3, zero_or_one},
    {url_filter,      4, Text{1, 60, visible_in_list, bad_value}},               // URL, or a word of one
    {ip_filter,       1, zero_or_one},
    {ip_filter,       2, zero_or_one},
    {ip_filter,       3, zero_or_one},
    {ip_filter,       4, DottedQuad{}},                                          // destination, first
    {ip_filter,       5, DottedQuad{}},                                          // last
    {ip_filter,       6, DottedQuad{}},                                          // source, first
    {ip_filter,       7, DottedQuad{}},                                          // last
    {ip_filter,       8, optional_port},                                         // destination, first
    {ip_filter,       9, optional_port},                                         // last
    {ip_filter,      10, optional_port},                                         // source, first
    {ip_filter,      11, optional_port},                                         // last
    {ip_filter,      12, OneOf{"1 2 3 4 6", bad_value}},                         // protocol; 4 and 6 have no ports
    {ip_filter,      13, Text{0, 32, filter_comment_character, bad_value}},
    {ipv6_filter,     1, zero_or_one},
    {ipv6_filter,     2, zero_or_one},
    {ipv6_filter,     3, zero_or_one},

    {access_control,  8, AccessHost{}},                                          // first
    {access_control,  9, AccessHost{}},                                          // last

    {static_route,    0, server_address},                                        // gateway
    {static_route,    1, RouteDestination{}},
    {static_route,    2, RouteNetmask{}},
    {static_route,    3, zero_or_one},                                           // through a gateway, directly

    {sip,             0, zero_or_one},
    {sip,             1, sip_text(sip_user_character)},                          // directory number
    {sip,             2, sip_text(visible)},                                     // user
    {sip,             3, sip_text(printable)},                                   // password
    {sip,             4, zero_or_one},                                           // registrar, mobile network
    {sip,             5, sip_server},                                            // P-CSCF
    {sip,             6, sip_port},
    {sip,             7, sip_server},                                            // registrar
    {sip,             8, sip_port},
    {sip,             9, sip_server},                                            // proxy
    {sip,            10, sip_port},
    {sip,            11, sip_server},                                            // domain of the user agent

    {telephone_line,  0, OneOf{"InBand RFC2833 SIPInfo", bad_value}},            // how key tones travel
    {telephone_line,  1, OneOf{"Disable PassThrough T38", bad_value}},           // fax
    {telephone_line,  2, rtp_port},                                              // first
    {telephone_line,  3, rtp_port},                                              // last
    {telephone_line,  4, zero_or_one},                                           // silence suppression
    {telephone_line,  5, OneOf{"AT AU BE BR CA CH CN CZ DE DK ES FI FR GB GR HU IE IN IT JP KR MX NL NO NZ PL PT SE "
                               "SG TW US ZA", bad_value}},                       // whose tones the line plays
    {telephone_line,  6, OneOf{"None Bellcore ETSI DTMF", bad_value}},           // how the caller's number is shown
    {telephone_line,  7, number(1, 20)},                                         // seconds between two digits
    {telephone_line,  8, number(5, 60)},                                         // seconds off hook without a digit

    {codec,           0, codec_name},
    {codec,           1, codec_name},
    {codec,           2, Optional<OneOf>{codec_name}},                           // the list may end with the second

    {speed_dial,      0, OneOf{"1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16", bad_value}}, // in one spelling: no "07"
    {speed_dial,      1, Text{1, 27, dialled_character, bad_value}},             // 27: rows of up to 63 stay whole
    {diagnostics_host, 1, TestHost{}},

    {snmp,            0, zero_or_one},                                           // on
    {snmp,            2, Credential{1}},                                         // user
    {snmp,            4, Credential{8}},                                         // password

    {speed_dial,      2, Sized<Text>{32, {0, 32, note_character}, /*too_long=*/-1, /*invalid=*/-2}},
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
