// The keys of the device's stores that more than one place needs, by name. A key that one row of a table alone needs
// stands in that row.
#pragma once

namespace kova::key {

// ---- Configuration: the LAN and WiFi
inline constexpr const char lan_address[] = "lan_ip", lan_netmask[] = "lan_netmask",
                            dhcp_mode[] = "dhcpEnabled", dhcp_start[] = "dhcpStart", dhcp_end[] = "dhcpEnd",
                            lease_time[] = "dhcpLeaseTime", dns_option[] = "dnsOption",
                            dns_1[] = "primaryDNS", dns_2[] = "secondaryDNS", dns_3[] = "thirdlyDNS";
inline constexpr const char wifi_mode[] = "0_rfmode", wifi_rate[] = "Fixrate", wifi_bandwidth[] = "Bandwidth";

// ---- Configuration: the operation mode and the WAN
inline constexpr const char oper_mode[] = "oper_mode", vpn_type[] = "vpn_type", bcp_enable[] = "bcp_enable",
                            gre_type[] = "gre_type", mtu[] = "internet_mtu";
inline constexpr const char vpn_nat[] = "vpn_nat_enable", layer_3_interface[] = "l3vpn_default_if",
                            l2tp_host_name[] = "l2tp_host_name", l2tp_server[] = "l2tp_lns_ip",
                            l2tp_user[] = "l2tp_ppp_user", l2tp_password[] = "l2tp_ppp_pass",
                            gre_address[] = "gre_tunnel_ip", gre_netmask[] = "gre_tunnel_ip_mask",
                            gre_destination[] = "gre_dest_ip";
inline constexpr const char duplex[] = "/tarn/cell_selection/dedicated_duplex"; // also a leaf of the tree

// ---- Configuration: the firewall
inline constexpr const char dmz_enable[] = "DMZEnable", dmz_address[] = "DMZAddress",
                            port_forward_enable[] = "PortForwardEnable",
                            port_forward_rules[] = "PortForwardRules";
inline constexpr const char acl_enable[] = "AclEnable", web_login_enable[] = "TR_WEB_LOGIN_ENABLE";
inline constexpr const char mac_enable[] = "MACFilterEnable", mac_mode[] = "MACFilterMode",
                            mac_black[] = "MACFilterRules", mac_white[] = "MACFilterWhiteRules",
                            wlan_mac_white[] = "WlanMACFilterWhiteRules";
inline constexpr const char url_enable[] = "URLFilterEnable", url_mode[] = "URLFilterMode",
                            url_black[] = "URLFilterRules", url_white[] = "URLFilterWhiteRules";
inline constexpr const char ip_enable[] = "IPPortFilterEnable", ip_mode[] = "DefaultIPPortFilterPolicy",
                            ip_black[] = "IPPortFilterRules", ip_white[] = "IPPortFilterWhiteRules";
inline constexpr const char ipv6_enable[] = "IPPort6FilterEnable", ipv6_mode[] = "DefaultIPPort6FilterPolicy";

// ---- Configuration: management, time, voice, spectrum access
inline constexpr const char inform_enable[] = "TR_INFORM_ENABLE", inform_interval[] = "TR_INFORM_INTERVAL",
                            provisioning_code[] = "TR_PROVCODE";
inline constexpr const char daylight_saving[] = "NTPDaylightSaving";
inline constexpr const char sip_enable[] = "SIPEnable", sip_server_mode[] = "SIPServerMode";
inline constexpr const char snmp_enable[] = "snmp_enable";
inline constexpr const char sas_domain_proxy[] = "SAS_USEDP", sas_radio_enable[] = "SAS_CONFIG_RADIOENABLE",
                            sas_power[] = "SAS_CONFIG_POWER";

// ---- Run time
inline constexpr const char data_interface[] = "curr_data_if", data_state[] = "lte_data_state",
                            serial_number[] = "CACHE_SN", managing_client[] = "curr_user_ip",
                            cell_record[] = "DM_CELL_STAT_INFO", plmn[] = "lte_cur_plmn",
                            band[] = "lte_cur_band", downlink_frequency[] = "lte_cur_freq",
                            uplink_frequency[] = "lte_cur_ulfreq";

} // namespace kova::key
