/* The rules of the platform's checker (tarn_check_param) by name. A rule is an item of a group; both numbers are the
 * platform's own. */
#ifndef PLATFORM_RULES_H
#define PLATFORM_RULES_H

/* clang-format off */
enum kova_rule {
  RULE_WIFI_ENABLE                  =  1 << 8 |  1,
  RULE_WIFI_MODE                    =  1 << 8 |  2,
  RULE_WIFI_CHANNEL                 =  1 << 8 |  3,
  RULE_WIFI_SSID                    =  1 << 8 |  4,
  RULE_WIFI_PASS_PHRASE             =  1 << 8 |  7,
  RULE_WIFI_RATE                    =  1 << 8 | 17,
  RULE_WIFI_BANDWIDTH               =  1 << 8 | 19,
  RULE_WIFI_HIDDEN                  =  1 << 8 | 24,
  RULE_WIFI_ISOLATION               =  1 << 8 | 25,

  RULE_LAN_DHCP_MODE                =  3 << 8 |  8,
  RULE_LAN_ADDRESS                  =  3 << 8 |  9,
  RULE_LAN_NETMASK                  =  3 << 8 | 10,
  RULE_LAN_POOL_START               =  3 << 8 | 11,
  RULE_LAN_POOL_END                 =  3 << 8 | 12,
  RULE_LAN_LEASE_TIME               =  3 << 8 | 21,
  RULE_LAN_DNS_OPTION               =  3 << 8 | 27,
  RULE_LAN_DNS_SERVER               =  3 << 8 | 28,

  RULE_TIME_DAYLIGHT_SAVING         =  4 << 8 |  8,
  RULE_TIME_NTP_SERVER              =  4 << 8 | 10,
  RULE_TIME_START_WEEK              =  4 << 8 | 11,
  RULE_TIME_START_WEEKDAY           =  4 << 8 | 12,
  RULE_TIME_START_MONTH             =  4 << 8 | 13,
  RULE_TIME_END_WEEK                =  4 << 8 | 14,
  RULE_TIME_END_WEEKDAY             =  4 << 8 | 15,
  RULE_TIME_END_MONTH               =  4 << 8 | 16,
  RULE_TIME_ZONE                    =  4 << 8 | 17,

  RULE_ACS_URL                      =  7 << 8 |  2,
  RULE_ACS_USER                     =  7 << 8 |  3,
  RULE_ACS_PASSWORD                 =  7 << 8 |  4,
  RULE_ACS_INFORM                   =  7 << 8 |  5,
  RULE_ACS_INFORM_INTERVAL          =  7 << 8 |  6,
  RULE_ACS_REQUEST_USER             =  7 << 8 |  7,
  RULE_ACS_REQUEST_PASSWORD         =  7 << 8 |  8,
  RULE_ACS_NOTIFICATION_LIMIT       =  7 << 8 | 13,
  RULE_ACS_STUN                     =  7 << 8 | 14,
  RULE_ACS_STUN_SERVER              =  7 << 8 | 15,
  RULE_ACS_STUN_PORT                =  7 << 8 | 16,
  RULE_ACS_STUN_USER                =  7 << 8 | 17,
  RULE_ACS_STUN_PASSWORD            =  7 << 8 | 18,
  RULE_ACS_STUN_MAX_PERIOD          =  7 << 8 | 19,
  RULE_ACS_STUN_MIN_PERIOD          =  7 << 8 | 20,
  RULE_ACS_NAT_DETECTED             =  7 << 8 | 21,
  RULE_ACS_STUN_REALM               =  7 << 8 | 22,
  RULE_ACS_FINGERPRINT              =  7 << 8 | 23,
  RULE_ACS_CLOUD_KEY                =  7 << 8 | 24,
  RULE_ACS_NICK_NAME                =  7 << 8 | 25,

  RULE_SAS_TEXT                     =  7 << 8 | 49,
  RULE_SAS_MAX_EIRP                 =  7 << 8 | 50,
  RULE_SAS_LOW_FREQUENCY            =  7 << 8 | 51,
  RULE_SAS_HIGH_FREQUENCY           =  7 << 8 | 52,
  RULE_SAS_POWER_DENSITY            =  7 << 8 | 53,
  RULE_SAS_STEPS                    =  7 << 8 | 54,
  RULE_SAS_EXPIRY                   =  7 << 8 | 55,

  RULE_WAN_OPER_MODE                =  9 << 8 |  0,
  RULE_WAN_VPN_TYPE                 =  9 << 8 |  1,
  RULE_WAN_VPN_NAT                  =  9 << 8 |  2,
  RULE_WAN_DEFAULT_INTERFACE        =  9 << 8 |  3,
  RULE_WAN_BCP                      =  9 << 8 |  4,
  RULE_WAN_L2TP_HOST_NAME           =  9 << 8 |  5,
  RULE_WAN_L2TP_SERVER              =  9 << 8 |  6,
  RULE_WAN_L2TP_USER                =  9 << 8 |  7,
  RULE_WAN_L2TP_PASSWORD            =  9 << 8 |  8,
  RULE_WAN_GRE_TYPE                 =  9 << 8 | 10,
  RULE_WAN_GRE_TUNNEL_ADDRESS       =  9 << 8 | 11,
  RULE_WAN_GRE_TUNNEL_MASK          =  9 << 8 | 12,
  RULE_WAN_GRE_DESTINATION          =  9 << 8 | 13,

  RULE_DMZ_ENABLE                   = 11 << 8 |  1,
  RULE_DMZ_HOST                     = 11 << 8 |  2,

  RULE_MAC_FILTER_ENABLE            = 13 << 8 |  1,
  RULE_MAC_FILTER_MODE              = 13 << 8 |  2,
  RULE_MAC_FILTER_LOG               = 13 << 8 |  3,
  RULE_MAC_FILTER_ADDRESS           = 13 << 8 |  4,

  RULE_URL_FILTER_ENABLE            = 15 << 8 |  1,
  RULE_URL_FILTER_MODE              = 15 << 8 |  2,
  RULE_URL_FILTER_LOG               = 15 << 8 |  3,
  RULE_URL_FILTER_URL               = 15 << 8 |  4,

  RULE_ACL_START                    = 16 << 8 |  8,
  RULE_ACL_END                      = 16 << 8 |  9,

  RULE_IP_FILTER_ENABLE             = 17 << 8 |  1,
  RULE_IP_FILTER_MODE               = 17 << 8 |  2,
  RULE_IP_FILTER_LOG                = 17 << 8 |  3,
  RULE_IP_FILTER_DST_BEGIN          = 17 << 8 |  4,
  RULE_IP_FILTER_DST_END            = 17 << 8 |  5,
  RULE_IP_FILTER_SRC_BEGIN          = 17 << 8 |  6,
  RULE_IP_FILTER_SRC_END            = 17 << 8 |  7,
  RULE_IP_FILTER_DST_PORT_BEGIN     = 17 << 8 |  8,
  RULE_IP_FILTER_DST_PORT_END       = 17 << 8 |  9,
  RULE_IP_FILTER_SRC_PORT_BEGIN     = 17 << 8 | 10,
  RULE_IP_FILTER_SRC_PORT_END       = 17 << 8 | 11,
  RULE_IP_FILTER_PROTOCOL           = 17 << 8 | 12,
  RULE_IP_FILTER_COMMENT            = 17 << 8 | 13,

  RULE_IPV6_FILTER_ENABLE           = 18 << 8 |  1,
  RULE_IPV6_FILTER_MODE             = 18 << 8 |  2,
  RULE_IPV6_FILTER_LOG              = 18 << 8 |  3,

  RULE_ROUTE_GATEWAY                = 19 << 8 |  0,
  RULE_ROUTE_NETWORK                = 19 << 8 |  1,
  RULE_ROUTE_MASK                   = 19 << 8 |  2,
  RULE_ROUTE_TYPE                   = 19 << 8 |  3,

  RULE_DIAGNOSTICS_HOST             = 21 << 8 |  1,

  RULE_SNMP_ENABLE                  = 24 << 8 |  0,
  RULE_SNMP_USER                    = 24 << 8 |  2,
  RULE_SNMP_PASSWORD                = 24 << 8 |  4,

  RULE_SIP_ENABLE                   = 26 << 8 |  0,
  RULE_SIP_NUMBER                   = 26 << 8 |  1,
  RULE_SIP_USER                     = 26 << 8 |  2,
  RULE_SIP_PASSWORD                 = 26 << 8 |  3,
  RULE_SIP_SERVER_MODE              = 26 << 8 |  4,
  RULE_SIP_PCSCF                    = 26 << 8 |  5,
  RULE_SIP_PCSCF_PORT               = 26 << 8 |  6,
  RULE_SIP_REGISTRAR                = 26 << 8 |  7,
  RULE_SIP_REGISTRAR_PORT           = 26 << 8 |  8,
  RULE_SIP_PROXY                    = 26 << 8 |  9,
  RULE_SIP_PROXY_PORT               = 26 << 8 | 10,
  RULE_SIP_USER_AGENT_DOMAIN        = 26 << 8 | 11,

  RULE_LINE_DTMF                    = 27 << 8 |  0,
  RULE_LINE_FAX                     = 27 << 8 |  1,
  RULE_LINE_RTP_START_PORT          = 27 << 8 |  2,
  RULE_LINE_RTP_END_PORT            = 27 << 8 |  3,
  RULE_LINE_SILENCE_SUPPRESSION     = 27 << 8 |  4,
  RULE_LINE_REGION                  = 27 << 8 |  5,
  RULE_LINE_CALLER_ID               = 27 << 8 |  6,
  RULE_LINE_DIALING_INTERVAL        = 27 << 8 |  7,
  RULE_LINE_OFFHOOK_INTERVAL        = 27 << 8 |  8,

  RULE_CODEC_PRIMARY                = 28 << 8 |  0,
  RULE_CODEC_SECONDARY              = 28 << 8 |  1,
  RULE_CODEC_THIRD                  = 28 << 8 |  2,

  RULE_SPEED_DIAL_NUMBER            = 29 << 8 |  0,
  RULE_SPEED_DIAL_REAL_NUMBER       = 29 << 8 |  1,
  RULE_SPEED_DIAL_NOTE              = 29 << 8 |  2,

  RULE_DATA_MTU                     = 30 << 8 |  1,

  RULE_ALG_SIP                      = 31 << 8 |  1,

  RULE_WEB_HTTPS_PORT               = 41 << 8 |  1,
  RULE_WEB_HTTPS                    = 41 << 8 |  2
};
/* clang-format on */

static inline int kova_rule_group(enum kova_rule rule) {
  return rule >> 8;
}
static inline int kova_rule_item(enum kova_rule rule) {
  return rule & 0xff;
}

#endif
