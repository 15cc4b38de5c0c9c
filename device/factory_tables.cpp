#include "device/factory_tables.hpp"

namespace kova::device {
namespace {

// clang-format off
constexpr Setting identity[] = {
    {"TR_MF",           "Example Networks"},
    {"TR_OUI",          "021122"},              // of nobody: locally administered; see identity.cpp
    {"ProductName",     "KV100"},
    {"WEB_NAME",        "LTE outdoor router"},
    {"TR_ProductClass", "KV100"},
    {"TR_SpecVer",      "1.0"},
    {"TR_PROVCODE",     "TEST.LAB"},
    {"TR_DEVSUM",       "InternetGatewayDevice:1.4[](Baseline:1, EthernetLAN:1, WiFiLAN:1, Time:1, IPPing:1)"},
    {"TR_AddSoftVer",   "1.0.0"},
    {"TR_LAN_DEV_NUM",  "1"},
    {"TR_WAN_DEV_NUM",  "1"},
};

constexpr InstanceSetting management[] = {
    {"ENABLE",        "1",                                "0"},
    {"ACS_URL",       "",                                 ""}, // nobody outside is called unasked
    {"ACS_PASS",      "acs secret",                       "second acs secret"},
    {"INFORM_ENABLE", "1",                                "1"},
    {"INFORM_INTERVAL", "300",                            "300"},  // seconds
    {"INFORM_TIME",   "0001-01-01T00:00:00Z",             "0001-01-01T00:00:00Z"},
    {"PARAMKEY",      "",                                 ""},
    {"CR_USER",       "acs",                              "acs2"},
    {"CR_PASS",       "request secret",                   "second request secret"},
    {"UDPCR_LIMIT",   "60",                               "60"},   // seconds
    {"STUN_ENABLE",   "0",                                "0"},
    {"STUN_SERVER",   "stun.example.com",                 "stun.example.com"},
    {"STUN_PORT",     "3478",                             "3478"},
    {"STUN_USER",     "",                                 ""},
    {"STUN_PASS",     "",                                 ""},
    {"STUN_MAX_KA",   "180",                              "180"},  // seconds
    {"STUN_MIN_KA",   "30",                               "30"},
    {"NAT_DETECTED",  "0",                                "0"},
    {"CERT_ENABLE",   "0",                                "0"},
    {"CERT_PATH",     "/var/config/cwmp_client.pem",      "/var/config/sec_cwmp_client.pem"},
    {"CACERT_PATH",   "/var/config/cwmp_ca.pem",          "/var/config/sec_cwmp_ca.pem"},
    {"CLOUDKEY",      "",                                 ""},
    {"NICKNAME",      "lab router",                       "lab router"},
};

constexpr Setting system[] = {
    {"TR_IF_TYPE",             "data_pdn"},     // bearer of the management traffic
    {"TR_X_FINGERPRINTENABLE", "0"},
    {"TR_X_STUN_REALM",        "example.com"},
    {"/cwmp/loglevel",         "3"},
    {"/cwmp/MapnQos",          "0"},
    {"/cwmp/Operator",         "Example Mobile"},
    // Firewall and web access
    {"AclEnable",              "0"},            // 1, 3 and 4 keep remote management out
    {"SIPAlgEnable",           "1"},
    {"https_enable",           "1"},
    {"https_port",             "443"},
    {"TR_WEB_LOGIN_ENABLE",    "0"},            // from the WAN
    // Time
    {"NTPServerIP",            "ntp.example.com"},
    {"TZ",                     "MEZ_001"},
    {"NTPDaylightSaving",      "1"},
    {"NTP_DST_START_M",        "3"},
    {"NTP_DST_START_W",        "5"},            // row of the calendar month
    {"NTP_DST_START_D",        "0"},            // 0: Sunday
    {"NTP_DST_END_M",          "10"},
    {"NTP_DST_END_W",          "5"},
    {"NTP_DST_END_D",          "0"},
    // Radio
    {"lte_supported_bands",                    "1,3,7,20,28,38,40,41,42,43,48"}, // none: a device without modem
    {"/tarn/cell_selection/dedicated_duplex",  "FDD"},
};

constexpr Setting cell_selection[] = {
    {"scan_mode",                 "1"},         // 1 all bands, 2 preferred channels, 3 locked cells, 4 locked PCIs
    {"dedicated_duplex",          "FDD"},
    {"fdd_dedicated_pci_list",    "3,1300,12"}, // band, channel, PCI
    {"tdd_dedicated_pci_list",    "40,39150,24"},
    {"dedicated_pci_range",       "10,20"},
    {"fdd_dedicated_earfcn_list", "3,1300;3,1575"}, // band, channel
    {"tdd_dedicated_earfcn_list", "40,39150"},
};

// A cell of the test network 001 01 in band 3.
constexpr Setting radio[] = {
    {"lte_ue_state",      "4"},                 // 4: connected
    {"lte_cur_eci",       "4E2001"},
    {"lte_cur_enodeb_id", "4E20"},
    {"lte_cur_ecgi",      "0010104E2001"},
    {"lte_cur_plmn",      "00101"},
    {"lte_cur_band",      "3"},
    {"lte_cur_freq",      "18150"},             // in units of 100 kHz
    {"lte_cur_ulfreq",    "17200"},
    {"lte_cur_bandwidth", "20000"},             // kHz
    {"lte_roam_state",    "0"},
    {"imsi_infostr",      "001010123456789"},
    {"wan_primary_dns",   "192.0.2.53"},
    {"wan_secondary_dns", "198.51.100.53"},
};
// clang-format on

} // namespace

std::span<const Setting> identity_settings() {
  return identity;
}
std::span<const InstanceSetting> management_settings() {
  return management;
}
std::span<const Setting> system_settings() {
  return system;
}
std::span<const Setting> cell_selection_leaves() {
  return cell_selection;
}
std::span<const Setting> radio_facts() {
  return radio;
}

} // namespace kova::device
