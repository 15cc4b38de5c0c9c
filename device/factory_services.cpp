// Factory settings of what the router does for its users: packet filters and routes, telephone, accounts,
// watchdog, spectrum access.
#include "device/factory_tables.hpp"

namespace kova::device {
namespace {

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
    {"RTPStartPort",             "1024"}, // all that the rule takes, so that any range can be set, its end first
    {"RTPEndPort",               "65535"},
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

// Accounts, the ping watchdog, and spectrum access
constexpr Setting access[] = {
    {"snmp_enable",              "0"},
    {"snmp_username",            "monitor"},
    {"snmp_password",            "read-only"},
    {"WebTimeout",               "600"},        // seconds
    {"pingWdEnable",             "0"},
    {"pingWdIpAddress",          "192.0.2.1"},
    {"pingWdTimeOut",            "5"},
    {"pingWdCount",              "3"},
    {"pingWdRebootCount",        "10"},
    {"ROUTEHOPS_HOPHOST",        ""},
    {"SAS_ENABLEMODE",           "0"},
    {"SAS_USEDP",                "1"},
    {"SAS_ADDRESS",              "https://sas.example.com/v1.2"},
    {"SAS_STEP_CHOICE",          "0"},
    {"SAS_USERID",               "example"},
    {"SAS_FCCID",                "EXAMPLE-ID"},
    {"SAS_CBSD_CATEGORY",        "A"},
    {"SAS_RADIO_TECHNOLOGY",     "E_UTRA"},
    {"SAS_ANTENNAGAIN",          "12"},
    {"SAS_ANTENNAAZIMUTH",       "0"},
    {"SAS_ANTENNADOWNTILT",      "0"},
    {"SAS_ANTENNABEAMWIDTH",     "60"},
    {"SAS_CPI_LATITUDE",         "37.123456"},
    {"SAS_CPI_LONGITUDE",        "-122.654321"},
    {"SAS_CPI_HEIGHT",           "6"},
    {"SAS_CPI_HEIGHTUNIT",       "0"},          // 1: feet
    {"SAS_CPI_HEIGHTTYPE",       "AGL"},
    {"SAS_CPI_INDOORDEPLYMENT", "0"},
};
// clang-format on

} // namespace

std::span<const Setting> firewall_settings() {
  return firewall;
}
std::span<const Setting> telephone_settings() {
  return telephone;
}
std::span<const Setting> access_settings() {
  return access;
}

} // namespace kova::device
