// Daylight saving: in use or not, and the weekdays on which it starts and ends.
#include "src/frame/rows.hpp"
#include "src/frame/trace.hpp"
#include "src/time/time_rules.hpp"

#include <kova/time.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace kova::time {

namespace {

// One end of the period: where its three numbers are kept, and the items of their rules.
struct Edge {
  const char *month_key, *week_key, *weekday_key;
  int month_item, week_item, weekday_item;
  const char *not_used; // the debug message in a zone without daylight saving
};
constexpr Edge start = {"NTP_DST_START_M",
                        "NTP_DST_START_W",
                        "NTP_DST_START_D",
                        13,
                        11,
                        12,
                        "kovaCheckLocalTimeZone_DST Start not used.\n"};
constexpr Edge end = {"NTP_DST_END_M",
                      "NTP_DST_END_W",
                      "NTP_DST_END_D",
                      16,
                      14,
                      15,
                      "kovaCheckLocalTimeZone_DST End not used.\n"};

// The calendar row of the month in which the date lies, counted from the row of the first.
int week_of_month(const tm &date) {
  int shift = date.tm_wday + 1 - date.tm_mday % 7;
  if (shift < 0) shift += 7;
  if (shift == 7) shift = 0;
  return (shift - 1 + date.tm_mday) / 7 + 1;
}

bool store_number(const char *key, int number, int item) {
  char text[12];
  std::snprintf(text, sizeof text, "%d", number);
  if (!passes(kova::rule_of(rules, item), text)) return false;
  store(key, text);
  return true;
}

int set(const Edge &edge, const char *value) {
  if (kovaCheckLocalTimeZone() != 0) {
    dbg_trace("%s", edge.not_used);
    return -1;
  }
  tm date;
  if (getDateTime(value, &date) != 0) return -1;
  const time_t moment = mktime(&date);
  if (moment == -1) return -1; // beyond what the device's clock can tell
  localtime_r(&moment, &date);
  // What an earlier step stored stays when a later one is refused.
  const bool stored = store_number(edge.month_key, date.tm_mon + 1, edge.month_item) &&
                      store_number(edge.weekday_key, date.tm_wday, edge.weekday_item) &&
                      store_number(edge.week_key, week_of_month(date), edge.week_item);
  return stored ? 0 : -1;
}

// A stored number, kept small enough to reckon with whatever is stored.
int load_number(const char *key) {
  const unsigned long number = std::strtoul(load(key), nullptr, 10);
  return static_cast<int>(number < 10000 ? number : 9999);
}

int get(const Edge &edge, char *buf) {
  if (buf == nullptr) return -1;
  const int month = load_number(edge.month_key);
  const time_t moment = getDaylightDateTime(month, load_number(edge.week_key), load_number(edge.weekday_key));
  tm date;
  localtime_r(&moment, &date);
  date.tm_mon = month - 1; // the stored month, also when the day ran over into the next
  setDateTime(buf, &date);
  return 0;
}

} // namespace

} // namespace kova::time

using namespace kova;

time_t getDaylightDateTime(int month, int week, int weekday) {
  const time_t now = std::time(nullptr);
  tm date;
  localtime_r(&now, &date);
  date.tm_min = date.tm_sec = 0;
  date.tm_mon = month - 1;
  date.tm_mday = 1;
  date.tm_isdst = -1;
  mktime(&date);
  int day = weekday - date.tm_wday + 1 + (week - 1) * 7;
  if (day < 0) day += 7; // but day 0 is the last one of the month before
  date.tm_mday = day;
  date.tm_isdst = -1;
  return mktime(&date);
}

STORED(kovaGetDaylightSavingsUsed, "NTPDaylightSaving")
int kovasetDaylightSavingsUsed(const char *value) {
  if (kovaCheckLocalTimeZone() != 0) {
    dbg_trace("kovaCheckLocalTimeZone_Daylight not used.\n");
    return -1;
  }
  if (!passes(kova::time::daylight_saving_rule, text_or_empty(value))) return -1;
  store("NTPDaylightSaving", text_or_empty(value));
  return 0;
}

int kovaGetDaylightSavingsStart(char *buf, unsigned int) {
  return kova::time::get(kova::time::start, buf);
}
int kovaGetDaylightSavingsEnd(char *buf, unsigned int) {
  return kova::time::get(kova::time::end, buf);
}
int kovasetDaylightSavingsStart(const char *value) {
  return kova::time::set(kova::time::start, value);
}
int kovasetDaylightSavingsEnd(const char *value) {
  return kova::time::set(kova::time::end, value);
}
