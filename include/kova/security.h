/* security: packet filters and their rule lists, the security level, access control, static routes.
 *
 * Filter settings only change what is stored: the firewall takes them over when the family's apply
 * parameter is set to "1". Rule lists are tables whose rows are addressed by their number, from 1. Editing
 * works on the first 255 characters of a list, and cuts rows that it keeps to 63 characters when another
 * one is deleted. */
#ifndef KOVA_SECURITY_H
#define KOVA_SECURITY_H

#include <kova/accessors.h>
#include <stdint.h>

KOVA_BEGIN_EXPORTS

/* ---- Shapes of the operations on a rule list ----------------------------------------------------------- */

typedef int kova_row_add(void);                                      /* appends a placeholder row: 0, or -1 */
typedef int kova_row_delete(int index);                              /* 0, or -1 */
typedef int kova_row_setter(int index, const char *value);           /* 0, or the reason of the refusal */
typedef int kova_row_getter(int index, char *buf, unsigned int len); /* a missing row reads as "", 0 */

/* ---- Filter switches ----------------------------------------------------------------------------------- */

/* Enable "0" or "1"; mode "1" lets only listed entries pass (white), "0" all but the listed (black). Mode
 * and log are refused while the family is off. */
kova_getter kovaGetMacFilteringBasicSettingEnableValue, kovaGetMacFilteringBasicSettingModeValue,
    kovaGetMacFilteringBasicSettingLogEnableValue;
kova_setter kovasetMacFilteringBasicSettingEnableValue, kovasetMacFilteringBasicSettingLogEnableValue;
/* A change to white with an empty white list puts the managing client on it: nobody locks himself out. */
kova_setter kovasetMacFilteringBasicSettingModeValue;
kova_getter kovaGetUrlFilteringBasicSettingEnableValue, kovaGetUrlFilteringBasicSettingModeValue,
    kovaGetUrlFilteringBasicSettingLogEnableValue;
kova_setter kovasetUrlFilteringBasicSettingEnableValue, kovasetUrlFilteringBasicSettingModeValue,
    kovasetUrlFilteringBasicSettingLogEnableValue;
kova_getter kovaGetIpFilteringBasicSettingEnableValue, kovaGetIpFilteringBasicSettingModeValue,
    kovaGetIpFilteringBasicSettingLogEnableValue;
kova_setter kovasetIpFilteringBasicSettingEnableValue, kovasetIpFilteringBasicSettingModeValue,
    kovasetIpFilteringBasicSettingLogEnableValue;
kova_getter kovaGetIpv6FilteringBasicSettingEnableValue, kovaGetIpv6FilteringBasicSettingModeValue,
    kovaGetIpv6FilteringBasicSettingLogEnableValue;
kova_setter kovasetIpv6FilteringBasicSettingEnableValue, kovasetIpv6FilteringBasicSettingModeValue,
    kovasetIpv6FilteringBasicSettingLogEnableValue;
/* Exactly "1" has the firewall read the family's settings. The getters leave the buffer as it is. */
kova_setter kovasetMacApply, kovasetUrlApply, kovasetIpApply, kovasetIpv6Apply, kovasetACLApply;
kova_getter kovaGetIpApply, kovaGetIpv6Apply;

/* ---- Security level ------------------------------------------------------------------------------------ */

/* "0" none, "1" medium, "2" high, "3" the custom choice of the four switches. */
kova_getter kovaGetSystemSecuritySettingsSecurityLevel;
kova_setter kovasetSystemSecuritySettingsSecurityLevel;
/* Setting one of the switches makes the level custom, and remembers the choice. */
kova_getter kovaGetSystemSecuritySettingsACLValue, kovaGetSecuritySettingsBlockPortScanValue,
    kovaGetSystemSecuritySettingsBlockSynFloodValue, kovaGetSystemSecuritySettingsSPIFirewallValue;
kova_setter kovasetSystemSecuritySettingsACLValue, kovasetSecuritySettingsBlockPortScanValue,
    kovasetSystemSecuritySettingsBlockSynFloodValue, kovasetSystemSecuritySettingsSPIFirewallValue;
/* Web login from the WAN side, "0" or "1"; takes effect at once. */
kova_getter kovaGetWebLoginEnable;
kova_setter kovasetWebLoginEnable;

/* ---- Filter lists -------------------------------------------------------------------------------------- */

/* A black list can be edited while the mode is not white, a white one while it is not black; rows are
 * added and set only while the family is on. MAC rows are addresses (at most 16), URL rows texts (with 16
 * none can be set), IP rows ten comma-separated fields. */
kova_row_add kovaaddMACBlackFilterSetting, kovaaddMACWhiteFilterSetting, kovaaddURLBlackFilterSetting,
    kovaaddURLWhiteFilterSetting, kovaaddIPBlackFilterSetting, kovaaddIPWhiteFilterSetting,
    kovaaddIPV6BlackFilterSetting, kovaaddIPV6WhiteFilterSetting;
kova_row_setter kovaSetMACBlackFilterRules, kovaSetMACWhiteFilterRules, kovaSetURLBlackFilterRules,
    kovaSetURLWhiteFilterRules, kovaSetIPBlackFilterRules, kovaSetIPWhiteFilterRules,
    kovaSetIPV6BlackFilterRules, kovaSetIPV6WhiteFilterRules;
kova_row_getter kovaGetMACFilterRules, kovaGetMACFilterWhiteRules, kovaGetURLFilterRules,
    kovaGetURLFilterWhiteRules, kovaGetIPFilterRules, kovaGetIPFilterWhiteRules, kovaGetIPV6FilterRules,
    kovaGetIPV6FilterWhiteRules;
kova_row_delete kovadelMACBlackFilterSetting, kovadelMACWhiteFilterSetting, kovadelURLBlackFilterSetting,
    kovadelURLWhiteFilterSetting, kovadelIPBlackFilterSetting, kovadelIPWhiteFilterSetting,
    kovadelIPV6BlackFilterSetting, kovadelIPV6WhiteFilterSetting;

/* Row checks: 0, or negative. */
int checkMACFilterAllParam(const char *value);
/* 0 not in the list, 1 it is, 2 the list is full. An index text names the position (from 0) that does not
 * count. */
int checkMacReplyParam(const char *value, const char *mode, const char *indexText);
int checkInvalidMacParam(const char *value);
int checkUrlFilterParam(const char *value, int countCheck, const char *indexText, const char *modeText);
int checkURLReplyParam(const char *value, const char *indexText,
                       const char *modeText); /* 0, 1 it is in the list */
int checkURLParamCount(const char *modeText); /* the row count of the list that the mode chooses */
int checkIPFilterAllParam(const char *row);
int checkIPV6FilterAllParam(const char *row);

typedef struct {
  char srcIPBegin[20], srcIPEnd[20], srcPortBegin[20], srcPortEnd[20], dstIPBegin[20], dstIPEnd[20],
      dstPortBegin[20], dstPortEnd[20], protocol[20], comment[20];
} IPFilterRow;
/* 0, or -1 for a row with fewer than ten fields or a field that does not fit (a comment is cut). */
int IPFiltersplitAllParam(const char *row, IPFilterRow *out);
int IPV6FiltersplitAllParam(const char *row, IPFilterRow *out);

/* Field number index (from 0) of a separated text, cut to outlen - 1 characters; 0, or -1 when there is
 * none. */
int getNthField(int index, const char *text, char separator, char *out, int outlen);
int firewall_getRuleNums(const char *text); /* rows of a list text; 0 for the empty one */

/* ---- Access control ------------------------------------------------------------------------------------ */

/* Rows "service,start,end,interface": service 4, 7 or 8, an IPv4 or IPv6 range, 0 WAN or 1 LAN. */
kova_row_add kovaaddACLSettings;
kova_row_setter kovaSetACLSettingsRules;
kova_row_getter kovaGetACLSettingsRules;
kova_row_delete kovadelACLSettings;
int checkACLSettingsRulesAllParam(const char *row,
                                  int position); /* 0, or -1; appends an IPv6 row it accepts */
/* Appends a normalised IPv6 row to the list: 1 done, 0 refused. An empty marker bounds the list at 16
 * rows. */
int _aclConfigIpv6(const char *marker, const char *interface, const char *serviceType, const char *startIP,
                   const char *endIP);
uint32_t murmur_hash_3(const void *data, int length, uint32_t seed); /* blocks are read as big-endian words */

/* ---- Static routes ------------------------------------------------------------------------------------- */

/* Rows "gateway,network,mask,type". The setter answers the code of the reason (1 to 8, 10), or -1 for an
 * index out of range; the row getter -1 too. Set and delete restart the routing service. */
kova_getter kovaGetXRouteRulesNumberOfEntries;
kova_row_add kovaAddXRouteRulesRule;
kova_row_setter kovaSetXRouteRulesRule;
kova_row_getter kovaGetXRouteRulesRule;
kova_row_delete kovaDelXRouteRulesRule;
int checkX_RouteAllParam(const char *row);
const char *RouteSetting_getErrStr(int code);

KOVA_END_EXPORTS

#endif
