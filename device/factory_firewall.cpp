#include "device/factory_firewall.hpp"

namespace kova::device {
namespace {

using Setting = std::pair<const char *, const char *>;

// Modes: 0 black list, 1 white list.
// clang-format off
constexpr Setting firewall[] = {
    // MAC filter, for the wired and for the wireless clients
    {"MACFilterEnable",            "0"},
    {"WlanMACFilterEnable",        "0"},
    {"MACFilterMode",              "0"},
    {"WlanMACFilterMode",          "0"},
    {"MACFilterDropLogEnable",     "0"},
    {"MACFilterRules",             ""},
    {"WlanMACFilterRules",         ""},
    {"MACFilterWhiteRules",        ""},
    {"WlanMACFilterWhiteRules",    ""},
    // URL filter
    {"URLFilterEnable",            "0"},
    {"URLFilterMode",              "0"},
    {"URLFilterDropLogEnable",     "0"},
    {"URLFilterRules",             ""},
    {"URLFilterWhiteRules",        ""},
    // IP filter; its IPv4 switch and rules are among those that name LAN addresses
    {"DefaultIPPortFilterPolicy",  "0"},
    {"IPPortFilterDropLogEnable",  "0"},
    {"IPPort6FilterEnable",        "0"},
    {"DefaultIPPort6FilterPolicy", "0"},
    {"IPPort6FilterDropLogEnable", "0"},
    {"IPPort6FilterRules",         ""},
    {"IPPort6FilterWhiteRules",    ""},
    // Security level medium, and the same as the custom choice
    {"SPIFWEnabled",               "0"},
    {"BlockPortScan",              "1"},
    {"BlockSynFlood",              "1"},
    {"WebsSysFirewallCustom",      "0"},
    {"WebsSysFirewallCustomSettings", "0,0,1,1"}, // access control, stateful firewall, port scan, SYN flood
    {"AclRules",                   ""},
    {"curr_user_ip",               "192.168.1.101"}, // who manages the device; also a run-time fact
    {"static_route_key",           ""},
};

constexpr Setting telephone[] = {
    {"SIPEnable",                "1"},
    {"SIPServerMode",            "0"},          // 0 proxy and registrar, 1 P-CSCF of the mobile network
    {"SIPProxyServer",           "sip.example.com"},
    {"SIPProxyPort",             "5060"},
    {"SIPRegisterServer",        "sip.example.com"},
    {"SIPRegisterPort",          "5060"},
    {"SIPServerDomain",          "example.com"},
    {"pcscfServerDomain",        "ims.example.com"},
    {"pcscfServerPort",          "5060"},
    {"SIPId",                    "1001"},
    {"SIPUserName",              "1001"},
    {"SIPPassword",              "line secret"},
    {"DTMFMethod",               "RFC2833"},
    {"FAXOption",                "T38"},
    {"SIPVad",                   "0"},
    {"RTPStartPort",             "16384"},
    {"RTPEndPort",               "16482"},
    {"COUNTRYCode",              "US"},
    {"CALLERType",               "Bellcore"},
    {"DIALInterval",             "4"},          // seconds
    {"OFFInterval",              "20"},         // seconds
    {"PRIMARYCompressionType",   "G711U"},
    {"SECONDARYCompressionType", "G711A"},
    {"THIRDCompressionType",     "G729"},
    {"Listen_Gain",              "0"},          // twice the gain
    {"Speaker_Gain",             "0"},
    {"SPEEDDialLists",           ""},
};
// clang-format on

} // namespace

std::span<const Setting> firewall_settings() {
  return firewall;
}
std::span<const Setting> telephone_settings() {
  return telephone;
}

} // namespace kova::device
