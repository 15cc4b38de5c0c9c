// The rule checker: one row for each value that has a rule.
#include "platform/rules.h"

#include "platform/host/address_kinds.hpp"
#include "platform/host/complaints.hpp"
#include "platform/host/latest.hpp"
#include "platform/host/rule_admin.hpp"
#include "platform/host/rule_kinds.hpp"
#include "platform/host/text_of.hpp"
#include "platform/nvram.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <variant>

namespace {

using namespace kova::host;

using Kind =
    std::variant<Number, SignedNumber, OneOf, Text, WpaPassPhrase, TimeZone, SnmpCredential, Ipv4Address,
                 Ipv4Netmask, ServerAddressOrName, WebUrl, MacAddress, DottedQuad, RouteDestination,
                 RouteNetmask, AccessHost, TestHost, Sized<Text>, Sized<Number>, Sized<AnyServer>,
                 Optional<OneOf>, Optional<Ipv4Address>, Optional<ServerAddressOrName>>;

struct Rule {
  kova_rule name;
  Kind kind;
};

constexpr Words off_on = "0 off|1 on";
constexpr OneOf plain_switch{off_on};
constexpr OneOf on_off{off_on, bad_value}; // told apart from nothing at all
constexpr OneOf list_mode{"0 black list|1 white list", bad_value};

constexpr Text optional_text{0, 255, printable, bad_value};
constexpr Text ppp_text{1, 63, printable};
constexpr Text one_line(std::size_t min, std::size_t max, CharacterClass of) {
  return {min, max, of, bad_value};
}

constexpr Number number(std::int64_t min, std::int64_t max, std::string_view unit = {}, Words special = {}) {
  return {min, max, empty_value, bad_value, unit, special};
}
constexpr Number month = number(1, 12), week = number(1, 6);
constexpr Number weekday =
    number(0, 6, {}, "0 Sunday|1 Monday|2 Tuesday|3 Wednesday|4 Thursday|5 Friday|6 Saturday");
constexpr Number port = number(1, 65535), rtp_port = number(1024, 65535);
constexpr Number optional_port{1, 65535, accepted, bad_value};
constexpr Number seconds = number(0, 4294967295, "seconds"), frequency = number(0, 7000000000, "Hz");
constexpr SignedNumber power{-137, 47, "dBm/MHz"};

constexpr Ipv4Address lan_address{Ipv4Address::Of::lan_host};
constexpr Ipv4Address server_address{Ipv4Address::Of::server};
constexpr Ipv4Netmask netmask;

constexpr OneOf codec{"G711U mu-law|G711A A-law|G722 wideband|G723|G726|G729|AMR|AMR-WB wideband", bad_value};
constexpr Sized<Number> sip_port{5, port};
constexpr Sized<AnyServer> sip_server{64, {}};
constexpr Sized<Text> sip_text(CharacterClass of) {
  return {64, {1, 64, of}};
}

// Whose tones a telephone line plays.
constexpr OneOf regions{
    "AT Austria|AU Australia|BE Belgium|BR Brazil|CA Canada|CH Switzerland|CN China|"
    "CZ Czechia|DE Germany|DK Denmark|ES Spain|FI Finland|FR France|GB United Kingdom|"
    "GR Greece|HU Hungary|IE Ireland|IN India|IT Italy|JP Japan|KR Korea|MX Mexico|"
    "NL Netherlands|NO Norway|NZ New Zealand|PL Poland|PT Portugal|SE Sweden|SG Singapore|"
    "TW Taiwan|US United States|ZA South Africa",
    bad_value};

// clang-format off
constexpr Rule rules[] = {
    {RULE_WIFI_ENABLE,              plain_switch},
    {RULE_WIFI_MODE,                OneOf{"BONLY 802.11b|GONLY 802.11g|NONLY 802.11n|BG 802.11b and g|"
                                          "GN 802.11g and n|BGN 802.11b, g and n"}},
    {RULE_WIFI_CHANNEL,             Number{0, 13, -1, -1, {}, "0 automatic"}},
    {RULE_WIFI_SSID,                Text{1, 32, printable}},
    {RULE_WIFI_PASS_PHRASE,         WpaPassPhrase{}},
    {RULE_WIFI_RATE,                Number{0, 12, -1, -1, {}, "0 automatic"}},
    {RULE_WIFI_BANDWIDTH,           OneOf{"0 20 MHz|1 40 MHz"}},
    {RULE_WIFI_HIDDEN,              plain_switch},
    {RULE_WIFI_ISOLATION,           plain_switch},

    {RULE_LAN_DHCP_MODE,            OneOf{"0 off|1 server|2 relay"}},
    {RULE_LAN_ADDRESS,              lan_address},
    {RULE_LAN_NETMASK,              netmask},
    {RULE_LAN_POOL_START,           lan_address},
    {RULE_LAN_POOL_END,             lan_address},
    {RULE_LAN_LEASE_TIME,           Number{300, 172800, /*empty=*/-2, /*outside=*/-1, "seconds"}},
    {RULE_LAN_DNS_OPTION,           OneOf{"0|1"}},
    {RULE_LAN_DNS_SERVER,           Optional<Ipv4Address>{server_address}}, // the second and the third may be missing

    {RULE_TIME_DAYLIGHT_SAVING,     on_off},
    {RULE_TIME_NTP_SERVER,          ServerAddressOrName{}},
    {RULE_TIME_START_WEEK,          week},
    {RULE_TIME_START_WEEKDAY,       weekday},
    {RULE_TIME_START_MONTH,         month},
    {RULE_TIME_END_WEEK,            week},
    {RULE_TIME_END_WEEKDAY,         weekday},
    {RULE_TIME_END_MONTH,           month},
    {RULE_TIME_ZONE,                TimeZone{}},

    {RULE_ACS_URL,                  WebUrl{}},
    {RULE_ACS_USER,                 optional_text},
    {RULE_ACS_PASSWORD,             optional_text},
    {RULE_ACS_INFORM,               on_off},
    {RULE_ACS_INFORM_INTERVAL,      number(1, 4294967295, "seconds")},
    {RULE_ACS_REQUEST_USER,         optional_text},
    {RULE_ACS_REQUEST_PASSWORD,     optional_text},
    {RULE_ACS_NOTIFICATION_LIMIT,   seconds},
    {RULE_ACS_STUN,                 on_off},
    {RULE_ACS_STUN_SERVER,          Optional<ServerAddressOrName>{}}, // none: the management server
    {RULE_ACS_STUN_PORT,            port},
    {RULE_ACS_STUN_USER,            optional_text},
    {RULE_ACS_STUN_PASSWORD,        optional_text},
    {RULE_ACS_STUN_MAX_PERIOD,      seconds},
    {RULE_ACS_STUN_MIN_PERIOD,      seconds},
    {RULE_ACS_NAT_DETECTED,         OneOf{"0 no|1 yes", bad_value}},
    {RULE_ACS_STUN_REALM,           optional_text},
    {RULE_ACS_FINGERPRINT,          on_off},
    {RULE_ACS_CLOUD_KEY,            optional_text},
    {RULE_ACS_NICK_NAME,            optional_text},

    {RULE_SAS_TEXT,                 optional_text},
    {RULE_SAS_MAX_EIRP,             power},
    {RULE_SAS_LOW_FREQUENCY,        frequency},
    {RULE_SAS_HIGH_FREQUENCY,       frequency},
    {RULE_SAS_POWER_DENSITY,        power},
    {RULE_SAS_STEPS,                OneOf{"0|1|2", bad_value}}, // single or multiple registration step
    {RULE_SAS_EXPIRY,               optional_text},

    {RULE_WAN_OPER_MODE,            OneOf{"0 NAT|1 router|2 VPN|3 bridge"}},
    {RULE_WAN_VPN_TYPE,             OneOf{"0 L2TP|1 GRE"}},
    {RULE_WAN_VPN_NAT,              plain_switch},
    {RULE_WAN_DEFAULT_INTERFACE,    OneOf{"0 no|1 the VPN"}},
    {RULE_WAN_BCP,                  OneOf{"0 layer 3|1 bridged"}},
    {RULE_WAN_L2TP_HOST_NAME,       Text{1, 63, host_name_character}},
    {RULE_WAN_L2TP_SERVER,          ServerAddressOrName{}},
    {RULE_WAN_L2TP_USER,            ppp_text},
    {RULE_WAN_L2TP_PASSWORD,        ppp_text},
    {RULE_WAN_GRE_TYPE,             OneOf{"0 layer 3|1 layer 2"}},
    {RULE_WAN_GRE_TUNNEL_ADDRESS,   server_address},
    {RULE_WAN_GRE_TUNNEL_MASK,      netmask},
    {RULE_WAN_GRE_DESTINATION,      server_address},

    {RULE_DMZ_ENABLE,               on_off},
    {RULE_DMZ_HOST,                 lan_address},

    {RULE_MAC_FILTER_ENABLE,        on_off},
    {RULE_MAC_FILTER_MODE,          list_mode},
    {RULE_MAC_FILTER_LOG,           on_off},
    {RULE_MAC_FILTER_ADDRESS,       MacAddress{}},

    {RULE_URL_FILTER_ENABLE,        on_off},
    {RULE_URL_FILTER_MODE,          list_mode},
    {RULE_URL_FILTER_LOG,           on_off},
    {RULE_URL_FILTER_URL,           one_line(1, 60, visible_in_list)}, // a URL, or a word of one

    {RULE_ACL_START,                AccessHost{}},
    {RULE_ACL_END,                  AccessHost{}},

    {RULE_IP_FILTER_ENABLE,         on_off},
    {RULE_IP_FILTER_MODE,           list_mode},
    {RULE_IP_FILTER_LOG,            on_off},
    {RULE_IP_FILTER_DST_BEGIN,      DottedQuad{}},
    {RULE_IP_FILTER_DST_END,        DottedQuad{}},
    {RULE_IP_FILTER_SRC_BEGIN,      DottedQuad{}},
    {RULE_IP_FILTER_SRC_END,        DottedQuad{}},
    {RULE_IP_FILTER_DST_PORT_BEGIN, optional_port},
    {RULE_IP_FILTER_DST_PORT_END,   optional_port},
    {RULE_IP_FILTER_SRC_PORT_BEGIN, optional_port},
    {RULE_IP_FILTER_SRC_PORT_END,   optional_port},
    {RULE_IP_FILTER_PROTOCOL,       OneOf{"1 with ports|2 with ports|3 with ports|4 without ports|"
                                          "6 without ports", bad_value}},
    {RULE_IP_FILTER_COMMENT,        one_line(0, 32, filter_comment_character)},

    {RULE_IPV6_FILTER_ENABLE,       on_off},
    {RULE_IPV6_FILTER_MODE,         list_mode},
    {RULE_IPV6_FILTER_LOG,          on_off},

    {RULE_ROUTE_GATEWAY,            server_address},
    {RULE_ROUTE_NETWORK,            RouteDestination{}},
    {RULE_ROUTE_MASK,               RouteNetmask{}},
    {RULE_ROUTE_TYPE,               OneOf{"0 through the gateway|1 direct", bad_value}},

    {RULE_DIAGNOSTICS_HOST,         TestHost{}},

    {RULE_SNMP_ENABLE,              on_off},
    {RULE_SNMP_USER,                SnmpCredential{1}},
    {RULE_SNMP_PASSWORD,            SnmpCredential{8}},

    {RULE_SIP_ENABLE,               on_off},
    {RULE_SIP_NUMBER,               sip_text(sip_user_character)},
    {RULE_SIP_USER,                 sip_text(visible)},
    {RULE_SIP_PASSWORD,             sip_text(printable)},
    {RULE_SIP_SERVER_MODE,          OneOf{"0 registrar|1 mobile network", bad_value}},
    {RULE_SIP_PCSCF,                sip_server},
    {RULE_SIP_PCSCF_PORT,           sip_port},
    {RULE_SIP_REGISTRAR,            sip_server},
    {RULE_SIP_REGISTRAR_PORT,       sip_port},
    {RULE_SIP_PROXY,                sip_server},
    {RULE_SIP_PROXY_PORT,           sip_port},
    {RULE_SIP_USER_AGENT_DOMAIN,    sip_server},

    {RULE_LINE_DTMF,                OneOf{"InBand as sound|RFC2833 as events of the stream|"
                                          "SIPInfo in SIP messages", bad_value}},
    {RULE_LINE_FAX,                 OneOf{"Disable no fax|PassThrough as sound|T38 as data", bad_value}},
    {RULE_LINE_RTP_START_PORT,      rtp_port},
    {RULE_LINE_RTP_END_PORT,        rtp_port},
    {RULE_LINE_SILENCE_SUPPRESSION, on_off},
    {RULE_LINE_REGION,              regions},
    {RULE_LINE_CALLER_ID,           OneOf{"None not shown|Bellcore|ETSI|DTMF", bad_value}},
    {RULE_LINE_DIALING_INTERVAL,    number(1, 20, "seconds")},
    {RULE_LINE_OFFHOOK_INTERVAL,    number(5, 60, "seconds")},

    {RULE_CODEC_PRIMARY,            codec},
    {RULE_CODEC_SECONDARY,          codec},
    {RULE_CODEC_THIRD,              Optional<OneOf>{codec}}, // the list may end with the second

    {RULE_SPEED_DIAL_NUMBER,        OneOf{"1|2|3|4|5|6|7|8|9|10|11|12|13|14|15|16", bad_value}}, // no "07"
    {RULE_SPEED_DIAL_REAL_NUMBER,   one_line(1, 27, dialled_character)}, // 27: rows of up to 63 stay whole
    {RULE_SPEED_DIAL_NOTE,          Sized<Text>{32, {0, 32, note_character}, /*too_long=*/-1, bad_value}},

    {RULE_DATA_MTU,                 Number{576, 1500, -1, -1, "bytes"}},
    {RULE_ALG_SIP,                  on_off},
    {RULE_WEB_HTTPS_PORT,           port},
    {RULE_WEB_HTTPS,                on_off},
};
// clang-format on

const Rule *find_rule(int group, int item) {
  const auto *const rule = std::ranges::find_if(rules, [group, item](const Rule &row) {
    return kova_rule_group(row.name) == group && kova_rule_item(row.name) == item;
  });
  return rule == std::end(rules) ? nullptr : rule;
}

constexpr int no_rule = -99;

int judge(int group, std::string_view value, int item) {
  const Rule *rule = find_rule(group, item);
  if (rule != nullptr) return std::visit([value](const auto &kind) { return kind.judge(value); }, rule->kind);
  tarn_log_console("rules: value refused, there is no rule for item %d of group %d", item, group);
  return no_rule;
}

// Never destroyed: others' exit handlers may still ask.
Latest<Judgement> &refusals() {
  static auto &latest = *new Latest<Judgement>;
  return latest;
}
Latest<std::string> &complaints() {
  static auto &latest = *new Latest<std::string>;
  return latest;
}

} // namespace

int tarn_check_param(int group, const char *value, int item) {
  const std::string_view text = text_of(value);
  const int code = judge(group, text, item);
  if (code < 0) refusals().add({group, item, std::string(text), code});
  return code;
}

std::optional<RuleDescription> kova::host::describe_rule(int group, int item) {
  const Rule *rule = find_rule(group, item);
  if (rule == nullptr) return {};
  return std::visit(
      [](const auto &kind) {
        RuleDescription description = kind.describe();
        description.takes_empty = kind.judge("") == accepted;
        return description;
      },
      rule->kind);
}

std::vector<Judgement> kova::host::take_refusals() {
  return refusals().take();
}

void kova::host::complain(std::string sentence) {
  complaints().add(std::move(sentence));
}

std::vector<std::string> kova::host::take_complaints() {
  return complaints().take();
}
