// The checks of MAC and URL rows.
#include "src/security/mac_url_rows.hpp"

#include "platform/keys.hpp"
#include "platform/webs.h"
#include "src/frame/trace.hpp"
#include "src/lists/row_list.hpp"
#include "src/security/manager.hpp"

#include <kova/security.h>

#include <cstdio>

namespace kova::security {

namespace {

using namespace lists;

constexpr const char *black = "0"; // any other mode chooses the white list

const char *mac_list(const char *mode) {
  return equal(mode, black) ? key::mac_black : key::mac_white;
}
const char *url_list(const char *mode) {
  return equal(mode, black) ? key::url_black : key::url_white;
}

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

int check_mac_row(const char *value, int) {
  return checkMACFilterAllParam(value);
}

// The position that a repetition may stand at is that of the row before: agents rely on the refusal of a row's own
// text.
int check_url_row(const char *value, int position) {
  return checkUrlFilterParam(value, 1, NumberText(position - 1), load(key::url_mode));
}

} // namespace kova::security

using namespace kova;
using namespace kova::security;

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
  if (!equal(load(key::mac_mode), black)) return 0;
  const MacText manager = managing_client(Section::runtime);
  return manager.chars[0] != '\0' && equal(manager.chars, value) ? -5 : 0;
}

int checkMACFilterAllParam(const char *value) {
  value = text_or_empty(value);
  const bool repeated = checkMacReplyParam(value, load(key::mac_mode), "") > 0;
  const bool malformed = !passes(RULE_MAC_FILTER_ADDRESS, value);
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
  const int code = ask(RULE_URL_FILTER_URL, value);
  if (code < 0) return refuse(code == -1 ? "Error, url value is Empty" : "Error, url value error.");
  if (websCheckURL(value) < 0) return refuse("Error, url value error.");
  if (checkURLReplyParam(value, indexText, modeText) == 1) return refuse("Error, url value reply.");
  if (countCheck != 0 && checkURLParamCount(modeText) > most_before_a_set)
    return refuse("Error, The rule number is exceeded 16.");
  return 0;
}
