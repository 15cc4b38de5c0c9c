// The eight filter lists, and the checks of MAC and URL rows.
#include "platform/nvram.h"
#include "platform/webs.h"
#include "src/frame/trace.hpp"
#include "src/security/manager.hpp"
#include "src/security/rule_list.hpp"

#include <kova/security.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace kova::rules {

namespace {

constexpr const char *white = "1", *black = "0"; // values of a family's mode

constexpr int mac_rules = 13, url_rules = 15, row_item = 4;

// The list that a mode chooses: black for "0", white for anything else.
const char *mac_list(const char *mode) {
  return equal(mode, black) ? "MACFilterRules" : "MACFilterWhiteRules";
}
const char *url_list(const char *mode) {
  return equal(mode, black) ? "URLFilterRules" : "URLFilterWhiteRules";
}

int check_mac_row(const char *value, int) {
  return checkMACFilterAllParam(value);
}

// The position that a repetition may stand at is that of the row before: agents rely on the refusal of a row's own text.
int check_url_row(const char *value, int position) {
  char allowed[16];
  std::snprintf(allowed, sizeof allowed, "%d", position - 1);
  return checkUrlFilterParam(value, 1, allowed, load("URLFilterMode"));
}

int check_ip_row(const char *value, int) {
  return checkIPFilterAllParam(value);
}
int check_ipv6_row(const char *value, int) {
  return checkIPV6FilterAllParam(value);
}

constexpr const char *blank = " ", *ip_placeholder = " ,,,,,,,,1,1";

// clang-format off
//                          name    its rows           key                       mirror                     placeholder     reads: add, set, delete           keeps: set, delete      on while               mode, refused
constexpr List
    mac_black  = {"MAC",  "MACBlackFilter",  "MACFilterRules",          "WlanMACFilterRules",      blank,          {first_255, first_255, first_255}, {keeps_255, keeps_63}, {"MACFilterEnable",     "MACFilterMode",              white}, check_mac_row},
    mac_white  = {"MAC",  "MACWhiteFilter",  "MACFilterWhiteRules",     "WlanMACFilterWhiteRules", blank,          {first_255, first_255, first_255}, {keeps_255, keeps_63}, {"MACFilterEnable",     "MACFilterMode",              black}, check_mac_row},
    url_black  = {"URL",  "URLBlackFilter",  "URLFilterRules",          nullptr,                   blank,          {first_255, first_255, first_255}, {keeps_63,  keeps_63}, {"URLFilterEnable",     "URLFilterMode",              white}, check_url_row},
    url_white  = {"URL",  "URLWhiteFilter",  "URLFilterWhiteRules",     nullptr,                   blank,          {first_255, first_255, first_255}, {keeps_63,  keeps_63}, {"URLFilterEnable",     "URLFilterMode",              black}, check_url_row},
    ip_black   = {"IP",   "IPBlackFilter",   "IPPortFilterRules",       nullptr,                   ip_placeholder, {first_255, first_255, first_255}, {keeps_255, keeps_63}, {"IPPortFilterEnable",  "DefaultIPPortFilterPolicy",  white}, check_ip_row},
    ip_white   = {"IP",   "IPWhiteFilter",   "IPPortFilterWhiteRules",  nullptr,                   ip_placeholder, {first_255, first_255, first_255}, {keeps_255, keeps_63}, {"IPPortFilterEnable",  "DefaultIPPortFilterPolicy",  black}, check_ip_row},
    ipv6_black = {"IPv6", "IPV6BlackFilter", "IPPort6FilterRules",      nullptr,                   ip_placeholder, {first_255, first_255, first_255}, {keeps_255, keeps_63}, {"IPPort6FilterEnable", "DefaultIPPort6FilterPolicy", white}, check_ipv6_row},
    ipv6_white = {"IPv6", "IPV6WhiteFilter", "IPPort6FilterWhiteRules", nullptr,                   ip_placeholder, {first_255, first_255, first_255}, {keeps_255, keeps_63}, {"IPPort6FilterEnable", "DefaultIPPort6FilterPolicy", black}, check_ipv6_row};
// clang-format on

// ---- MAC rows

// Does the value name an own interface, whose address is stored as twelve digits?
bool is_own_mac(const char *key, const char *value) {
  const Text digits = load(runtime(key));
  if (std::strlen(digits) < 12) return false;
  char mac[18] = {};
  for (std::size_t pair = 0; pair < 6; ++pair)
    std::snprintf(mac + 3 * pair, 4, "%.2s%s", digits.chars + 2 * pair, pair < 5 ? ":" : "");
  return std::strncmp(value, mac, 17) == 0;
}

bool is_group_address(const char *value) {
  // Upper-case digits only: lower-case ones have always passed.
  return value[0] != '\0' && value[1] != '\0' && std::strchr("13579BDF", value[1]) != nullptr;
}

} // namespace

} // namespace kova::rules

using namespace kova;
using namespace kova::rules;

// clang-format off
KOVA_RULE_LIST(kovaaddMACBlackFilterSetting,  kovaSetMACBlackFilterRules,  kovaGetMACFilterRules,       kovadelMACBlackFilterSetting,  mac_black)
KOVA_RULE_LIST(kovaaddMACWhiteFilterSetting,  kovaSetMACWhiteFilterRules,  kovaGetMACFilterWhiteRules,  kovadelMACWhiteFilterSetting,  mac_white)
KOVA_RULE_LIST(kovaaddURLBlackFilterSetting,  kovaSetURLBlackFilterRules,  kovaGetURLFilterRules,       kovadelURLBlackFilterSetting,  url_black)
KOVA_RULE_LIST(kovaaddURLWhiteFilterSetting,  kovaSetURLWhiteFilterRules,  kovaGetURLFilterWhiteRules,  kovadelURLWhiteFilterSetting,  url_white)
KOVA_RULE_LIST(kovaaddIPBlackFilterSetting,   kovaSetIPBlackFilterRules,   kovaGetIPFilterRules,        kovadelIPBlackFilterSetting,   ip_black)
KOVA_RULE_LIST(kovaaddIPWhiteFilterSetting,   kovaSetIPWhiteFilterRules,   kovaGetIPFilterWhiteRules,   kovadelIPWhiteFilterSetting,   ip_white)
KOVA_RULE_LIST(kovaaddIPV6BlackFilterSetting, kovaSetIPV6BlackFilterRules, kovaGetIPV6FilterRules,      kovadelIPV6BlackFilterSetting, ipv6_black)
KOVA_RULE_LIST(kovaaddIPV6WhiteFilterSetting, kovaSetIPV6WhiteFilterRules, kovaGetIPV6FilterWhiteRules, kovadelIPV6WhiteFilterSetting, ipv6_white)
// clang-format on

int checkMacReplyParam(const char *value, const char *mode, const char *indexText) {
  constexpr int absent = 0, found = 1, full = 2;
  constexpr std::size_t full_length = std::size_t{16} * 17; // sixteen addresses
  const OwnedText text = load_text(mac_list(text_or_empty(mode)));
  if (std::strlen(text) >= full_length) return full;
  const bool spares = !is_empty(indexText);
  const int spared = spares ? leading_number(indexText) : 0;
  value = text_or_empty(value);
  const bool repeated = any_row(
      text, [&](const Row &row, int position) { return row.is(value) && !(spares && position == spared); });
  return repeated ? found : absent;
}

int checkInvalidMacParam(const char *value) {
  value = text_or_empty(value);
  if (equal(value, "00:00:00:00:00:00")) return -1;
  if (equal(value, "FF:FF:FF:FF:FF:FF")) return -2;
  if (is_group_address(value)) return -3;
  if (is_own_mac("lan_mac", value) || is_own_mac("wlan_mac", value)) return -4;
  if (!equal(load("MACFilterMode"), black)) return 0;
  const security::MacText manager = security::managing_client(Section::runtime);
  return manager.chars[0] != '\0' && equal(manager.chars, value) ? -5 : 0;
}

int checkMACFilterAllParam(const char *value) {
  value = text_or_empty(value);
  const bool repeated = checkMacReplyParam(value, load("MACFilterMode"), "") > 0;
  const bool malformed = !passes(kova::rule_of(mac_rules, row_item), value);
  const bool invalid = checkInvalidMacParam(value) < 0;
  if (*value == '\0') return refuse("Error, The MAC Address can't be empty!");
  if (repeated) return refuse("Error, MAC address value reply!");
  if (malformed) return refuse("Error, MAC address error!");
  return invalid ? refuse("Error, Invalid MAC address!") : 0;
}

int checkURLParamCount(const char *modeText) {
  return firewall_getRuleNums(load_text(url_list(text_or_empty(modeText))));
}

int checkURLReplyParam(const char *value, const char *indexText, const char *modeText) {
  const OwnedText text = load_text(url_list(text_or_empty(modeText)));
  const int spared = leading_number(text_or_empty(indexText));
  value = text_or_empty(value);
  const auto repeats = [&](const Row &row, int position) {
    return position != spared && row.is_ignoring_case(value);
  };
  return any_row(text, repeats) ? 1 : 0;
}

int checkUrlFilterParam(const char *value, int countCheck, const char *indexText, const char *modeText) {
  constexpr int most_before_a_set = 15;
  value = text_or_empty(value);
  const int code = tarn_check_param(url_rules, value, row_item);
  if (code < 0) return refuse(code == -1 ? "Error, url value is Empty" : "Error, url value error.");
  if (websCheckURL(value) < 0) return refuse("Error, url value error.");
  if (checkURLReplyParam(value, indexText, modeText) == 1) return refuse("Error, url value reply.");
  if (countCheck != 0 && checkURLParamCount(modeText) > most_before_a_set)
    return refuse("Error, The rule number is exceeded 16.");
  return 0;
}
