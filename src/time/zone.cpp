// The time zone, as the data model's offset and as the code that the device's web pages share.
#include "platform/keys.hpp"
#include "src/frame/settings.hpp"

#include <kova/time.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace {

using kova::Text;

constexpr const char *zone_key = "TZ";

struct Zone {
  char offset[7], code[8];
  bool has_no_daylight_saving;
};
constexpr Zone zones[] = {
    {"-12:00", "UCT_-12", true},  {"-11:00", "SST_-11", true},  {"-10:00", "HAS_-10", true},
    {"-09:00", "AKS_-09", false}, {"-08:00", "PST_-08", false}, {"-07:00", "MST_-07", false},
    {"-06:00", "CST_-06", false}, {"-05:00", "UCT_-05", false}, {"-04:00", "CLT_-04", false},
    {"-03:30", "N_-3:30", false}, {"-03:00", "WGT_-03", false}, {"-02:00", "UCT_-02", true},
    {"-01:00", "AZO_-01", false}, {"+00:00", "GMT_000", false}, {"+01:00", "MEZ_001", false},
    {"+02:00", "EET_002", false}, {"+03:00", "NAI_003", true},  {"+04:00", "AZT_004", true},
    {"+04:30", "A_04:30", true},  {"+05:00", "PKT_005", true},  {"+05:30", "I_05:30", true},
    {"+05:45", "N_05:45", true},  {"+06:00", "BST_006", true},  {"+06:30", "M_06:30", true},
    {"+07:00", "WIB_007", true},  {"+08:00", "CST_008", true},  {"+08:30", "P_08:30", true},
    {"+09:00", "JST_009", true},  {"+09:30", "A_09:30", false}, {"+10:00", "AES_010", false},
    {"+11:00", "MAG_011", true},  {"+12:00", "NZS_012", false}, {"+13:00", "TOT_013", false}};

// Some of these come from the web pages only.
constexpr char daylight_saving_codes[][8] = {"AKS_-09", "PST_-08", "UCT_-08", "MST_-07", "UCT_-07", "CST_-06",
                                             "GMT_-06", "UCT_-05", "CLT_-04", "N_-3:30", "WGT_-03", "BRT_-03",
                                             "AZO_-01", "GMT_000", "CET_001", "MEZ_001", "EET_002", "ANK_002",
                                             "A_09:30", "AES_010", "FJT_012", "NZS_012", "WST_013"};
static_assert(std::size(daylight_saving_codes) == 23);

bool within(const char *two_characters, long most) {
  const char text[3] = {two_characters[0], two_characters[1], '\0'};
  const long number = std::strtol(text, nullptr, 10);
  return number >= 0 && number <= most;
}

bool is_digit(char character) {
  return std::isdigit(static_cast<unsigned char>(character)) != 0;
}

// "+hh:mm", whatever follows.
bool is_offset(const char *value) {
  if (std::strlen(value) < 6) return false;
  return (value[0] == '+' || value[0] == '-') && value[3] == ':' && within(value + 1, 13) &&
         is_digit(value[4]) && is_digit(value[5]) && within(value + 4, 59);
}

// Writes the offset that a stored code stands for.
void write_offset(const char *code, char (&offset)[Text::size + 4]) {
  const char *separator = std::strchr(code, '_');
  if (separator == nullptr) { // an offset that is no known zone is stored as it was set
    std::snprintf(offset, sizeof offset, "%s", code);
  } else if (code[1] == '_') { // "N_-3:30", "A_09:30"
    std::snprintf(offset, sizeof offset, "%s", separator);
    std::printf("%s\n", offset);
    if (code[2] == '-')
      std::memcpy(offset, "-0", 2);
    else
      offset[0] = '+';
  } else { // "PST_-08", "GMT_000"
    char whole[Text::size + 4];
    std::snprintf(whole, sizeof whole, "%s:00", code);
    if (whole[4] == '0') whole[4] = '+';
    std::snprintf(offset, sizeof offset, "%s", whole + (separator - code) + 1);
  }
}

} // namespace

int kovaGetLocalTimeZone(char *buf, unsigned int buflen) {
  char offset[Text::size + 4] = {};
  write_offset(kova::load(zone_key), offset);
  return kova::answer(offset, buf, buflen);
}

int kovasetLocalTimeZone(const char *value) {
  value = kova::text_or_empty(value);
  if (!is_offset(value)) return -1;
  char offset[7];
  std::snprintf(offset, sizeof offset, "%.6s", value);
  const char *stored = offset;
  for (const Zone &zone : zones) {
    if (!kova::equal(zone.offset, offset)) continue;
    // Before the rule is asked: a refused zone leaves daylight saving off too.
    if (zone.has_no_daylight_saving) kova::store(kova::key::daylight_saving, "0");
    stored = zone.code;
  }
  if (!kova::passes(RULE_TIME_ZONE, stored)) return -1;
  kova::store(zone_key, stored);
  return 0;
}

int kovaCheckLocalTimeZone(void) {
  const Text zone = kova::load(zone_key);
  for (const char *code : daylight_saving_codes)
    if (kova::equal(zone, code)) return 0;
  return -1;
}
