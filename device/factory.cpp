#include "device/factory.hpp"

#include "device/factory_tables.hpp"
#include "device/routes.hpp"
#include "platform/keys.hpp"
#include "platform/nvram.h"

#include <algorithm>
#include <array>

namespace kova::device {
namespace {

// clang-format off
constexpr Setting settings[] = {
    // LAN
    {"lan_ip",               "192.168.1.1"},    // address of the router
    {"lan_netmask",          "255.255.255.0"},
    {"dhcpEnabled",          "1"},              // 0 off, 1 server, 2 relay
    {"dhcpStart",            "192.168.1.100"},  // bounds of the pool
    {"dhcpEnd",              "192.168.1.200"},
    {"dhcpLeaseTime",        "86400"},          // seconds
    {"dnsOption",            "0"},              // stored inverted: 0 reads as 1
    {"primaryDNS",           "192.168.1.1"},    // servers handed to the clients
    {"secondaryDNS",         ""},
    {"thirdlyDNS",           ""},
    // Rules that name LAN addresses, and their switches as carried over a change of the operation mode
    {"DMZEnable",            "1"},
    {"DMZNatEnable",         "0"},
    {"DMZAddress",           "192.168.1.50"},   // host that receives what no rule claims
    {"PortForwardEnable",    "1"},
    {"PortForwardNatEnable", "0"},
    {"PortForwardRules",     "8080,8080,192.168.1.50,80,80,1,web"}, // WAN ports, host, LAN ports, protocol, comment
    {"PortTriggerEnable",    "0"},
    {"PortTriggerNatEnable", "0"},
    {"ConnectLimitEnable",   "0"},
    {"ConnectLimitNatEnable", "0"},
    {"IPPortFilterEnable",   "1"},
    {"IPPortFilterRules",    "192.168.1.60,192.168.1.69,,,203.0.113.10,203.0.113.20,25,25,1,no mail"},
    {"IPPortFilterWhiteRules", ""},
    // WAN
    {"oper_mode",            "0"},              // 2: through a VPN
    {"vpn_type",             "0"},              // 0 L2TP, 1 GRE
    {"bcp_enable",           "0"},              // 1: the L2TP tunnel is bridged
    {"gre_type",             "0"},              // 0 layer 3, 1 layer 2
    {"internet_mtu",         "1500"},
    {"lte_mgmt_pdn",         "2,mgmt,ipv4"},    // profile, APN, type of the management bearer
    // WiFi radio
    {"Wifi_enable",          "1"},
    {"0_rfmode",             "BGN"},
    {"Fixrate",              "0"},              // 0: adaptive
    {"Bandwidth",            "0"},              // 0: 20 MHz, 1: 40 MHz
    {"Channel",              "6"},
};

// WiFi networks; each key is preceded by the network's number and "_".
struct Network {
  const char *ssid, *enable, *mode, *cipher, *passphrase;
};
constexpr std::array<Network, 4> networks = {{
    {"kova",       "1", "WPA2", "AES",       "correct horse"},
    {"kova-guest", "0", "WPA2", "AES",       "battery staple"},
    {"kova-2",     "0", "OPEN", "UNDEFINED", ""},
    {"kova-3",     "0", "OPEN", "UNDEFINED", ""},
}};

// APN profiles; the bearer use: 0 data, 1 management, 3 none.
struct Profile {
  const char *enable, *name, *apn, *bearer_use;
};
constexpr std::array<Profile, 8> profiles = {{
    {"1", "data",       "internet", "0"},
    {"1", "management", "mgmt",     "1"},
    {"0", "profile3",   "",         "3"},
    {"0", "profile4",   "",         "3"},
    {"0", "profile5",   "",         "3"},
    {"0", "profile6",   "",         "3"},
    {"0", "profile7",   "",         "3"},
    {"0", "profile8",   "",         "3"},
}};

constexpr Setting facts[] = {
    {"lte_data_state",     "3"}, // 3: the bearer is up
    {"lte_mgmt_state",     "3"},
    {"different_subnets",  "0"}, // the last LAN change moved it to another subnet
    {"dhcp_ip_changed",    "0"}, // the LAN address was changed
    {"dhcp_ipaddr_change", "0"}, // the LAN address was changed within its subnet
    {"TR_UDPECHO_PLUS_SUPPORTED", "1"},
    {"CACHE_HW_VER",       "V1.0"},
    {"HW_VER",             "V1.0"},
    {"TR_MODEM_VER",       "1.0.0"},
    {"curr_user_ip",       "192.168.1.101"}, // the LAN client that manages the device
    {"pcscf_addr_voip",    "192.0.2.60"},    // P-CSCF that the mobile network named
};
// clang-format on

} // namespace

std::vector<host::NvramEntry> factory_settings(const Identity &identity) {
  std::vector<host::NvramEntry> entries;
  const auto add = [&entries](std::string key, std::string value) {
    entries.push_back({host::configuration_section, std::move(key), std::move(value)});
  };
  for (const std::span<const Setting> table :
       {std::span<const Setting>(settings), identity_settings(), system_settings(), firewall_settings(),
        telephone_settings(), access_settings()})
    for (const auto &[key, value] : table)
      add(key, value);
  for (const auto &[key, primary, secondary] : management_settings()) {
    add(std::string("TR_") + key, primary);
    add(std::string("S_TR_") + key, secondary);
  }
  const auto stored = [&entries](const char *key) {
    return std::ranges::find(entries, key, &host::NvramEntry::key)->value;
  };
  const std::string user = stored("TR_OUI") + "-" + stored("TR_ProductClass") + "-" + identity.serial;
  add("TR_ACS_USER", user);
  add("S_TR_ACS_USER", user);
  for (std::size_t i = 0; i < networks.size(); i++) {
    const std::string number = std::to_string(i) + "_";
    const Network &network = networks[i];
    add(number + "ssid", network.ssid);
    add(number + "ENABLE", network.enable);
    add(number + "hidden", "0");
    add(number + "apisolate", "0");
    add(number + "authmode", network.mode);
    add(number + "authalgo", network.cipher);
    add(number + "wpapass", network.passphrase);
  }
  return entries;
}

std::vector<std::pair<std::string, std::string>> factory_tree() {
  std::vector<std::pair<std::string, std::string>> leaves;
  for (std::size_t i = 0; i < profiles.size(); i++) {
    const Profile &profile = profiles[i];
    const Setting texts[] = {
        {"enable", profile.enable},
        {"profile_name", profile.name},
        {"apn_name", profile.apn},
        {"auth_type", "1"},
        {"username", ""},
        {"password", ""},
        {"pdn_type", "0"},
        {"mtu", "1500"},
        {"apply_to", profile.bearer_use},
        {"bridge_vid", "0"},
        {"gre_l2_dest_ip", ""},
        {"gre_l2_vlan_list", ""},
        {"gre_l2_untagged_vlan", ""},
    };
    const std::string node = "/tarn/cm_config/apnprofile/apn" + std::to_string(i + 1) + "/";
    for (const auto &[leaf, text] : texts)
      leaves.emplace_back(node + leaf, text);
  }
  for (const auto &[leaf, text] : cell_selection_leaves())
    leaves.emplace_back(std::string("/tarn/cell_selection/") + leaf, text);
  return leaves;
}

std::vector<host::NvramEntry> runtime_facts(const Identity &identity) {
  std::vector<host::NvramEntry> entries;
  const auto add = [&entries](const char *key, std::string value) {
    entries.push_back({host::runtime_section, key, std::move(value)});
  };
  for (const std::span<const Setting> table : {std::span<const Setting>(facts), radio_facts()})
    for (const auto &[key, value] : table)
      add(key, value);
  add(key::serial_number, identity.serial);
  add("IMEI", identity.imei);
  add("imei_infostr", identity.imei);
  add("lan_mac", identity.lan_mac);
  add("wlan_mac", identity.wlan_mac);
  const std::string interface = default_interface();
  const auto [address, netmask] = address_of(interface);
  add(key::data_interface, interface);
  add("curr_mgmt_if", interface);
  add("wan_ipaddr", address);
  add("wan_netmask", netmask);
  add("mgmt_ipaddr", address);
  add("TR_UDPCR_PATH", address.empty() ? "" : address + ":7547");
  add("S_TR_UDPCR_PATH", address.empty() ? "" : address + ":7550");
  // The up time at which the LTE connection came up: now.
  add("lte_conn_uptime", std::to_string(tarn_get_uptime()));
  return entries;
}

} // namespace kova::device
