// Daylight saving: in use or not, and the weekdays on which it starts and ends.
#include "src/time/daylight_saving.hpp"

#include "src/frame/trace.hpp"

#include <kova/time.h>

#include <climits>
#include <cstdint>
#include <cstdlib>
#include <ctime>

namespace kova::time {

namespace {

// The calendar row of the month in which the date lies, counted from the row of the first.
int week_of_month(const tm &date) {
  int shift = date.tm_wday + 1 - date.tm_mday % 7;
  if (shift < 0) shift += 7;
  if (shift == 7) shift = 0;
  return (shift - 1 + date.tm_mday) / 7 + 1;
}

bool store_number(const char *key, int number, Rule rule) {
  const NumberText text(number);
  if (!passes(rule, text)) return false;
  store(key, text);
  return true;
}

// A stored number, kept small enough to reckon with whatever is stored.
int load_number(const char *key) {
  const unsigned long number = std::strtoul(load(key), nullptr, 10);
  return static_cast<int>(number < 10000 ? number : 9999);
}

bool is_leap(int year) {
  return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

// A year that every clock can tell and whose calendar is that of the given one.
int year_alike(int year) {
  const auto new_year = [](int of) { return (of + (of - 1) / 4 - (of - 1) / 100 + (of - 1) / 400) % 7; };
  year = 400 + year % 400; // after which the calendar repeats itself
  for (int alike = 2000; alike < 2028; ++alike)
    if (is_leap(alike) == is_leap(year) && new_year(alike) == new_year(year)) return alike;
  return year;
}

// What mktime answers tells nothing: -1 is the last second of 1969, too. A date beyond what the clock can tell keeps its
// weekday; it is looked for in another year then.
void normalise(tm &date) {
  constexpr int unknown = -1;
  const tm given = date;
  date.tm_wday = unknown;
  mktime(&date);
  if (date.tm_wday != unknown) return;
  date = given;
  date.tm_year = year_alike(given.tm_year + 1900) - 1900;
  mktime(&date);
}

} // namespace

bool zone_has_daylight_saving() {
  if (kovaCheckLocalTimeZone() == 0) return true;
  dbg_trace("kovaCheckLocalTimeZone_Daylight not used.\n");
  return false;
}

int set_edge(const Edge &edge, const char *value, const Condition &) {
  tm date;
  if (!zone_has_daylight_saving() || getDateTime(value, &date) != 0) return -1;
  normalise(date);
  // What an earlier step stored stays when a later one is refused.
  const bool stored = store_number(edge.month_key, date.tm_mon + 1, edge.month_rule) &&
                      store_number(edge.weekday_key, date.tm_wday, edge.weekday_rule) &&
                      store_number(edge.week_key, week_of_month(date), edge.week_rule);
  return stored ? 0 : -1;
}

int answer_edge(const Edge &edge, char *buf, unsigned int) {
  if (buf == nullptr) return -1;
  const int month = load_number(edge.month_key);
  const time_t moment = getDaylightDateTime(month, load_number(edge.week_key), load_number(edge.weekday_key));
  tm date;
  localtime_r(&moment, &date);
  date.tm_mon = month - 1; // the stored month, also when the day ran over into the next
  setDateTime(buf, &date);
  return 0;
}

} // namespace kova::time

namespace {

// For arithmetic that absurd arguments take beyond an int.
int within_int(int64_t number) {
  return static_cast<int>(number < INT_MIN ? INT_MIN : number > INT_MAX ? INT_MAX : number);
}

} // namespace

time_t getDaylightDateTime(int month, int week, int weekday) {
  const time_t now = std::time(nullptr);
  tm date;
  localtime_r(&now, &date);
  date.tm_min = date.tm_sec = 0;
  date.tm_mon = within_int(int64_t{month} - 1);
  date.tm_mday = 1;
  date.tm_isdst = -1;
  mktime(&date);
  int64_t day = int64_t{weekday} - date.tm_wday + 1 + (int64_t{week} - 1) * 7;
  if (day < 0) day += 7; // but day 0 is the last one of the month before
  date.tm_mday = within_int(day);
  date.tm_isdst = -1;
  return mktime(&date);
}
