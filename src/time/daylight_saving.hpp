// Daylight saving: the weekdays on which it starts and ends.
#pragma once

#include "src/frame/conditions.hpp"
#include "src/frame/settings.hpp"

namespace kova::time {

// One end of the period: where its three numbers are kept, and their rules.
struct Edge {
  const char *month_key, *week_key, *weekday_key;
  Rule month_rule, week_rule, weekday_rule;
};
inline constexpr Edge start = {"NTP_DST_START_M",     "NTP_DST_START_W",    "NTP_DST_START_D",
                               RULE_TIME_START_MONTH, RULE_TIME_START_WEEK, RULE_TIME_START_WEEKDAY};
inline constexpr Edge end = {"NTP_DST_END_M",     "NTP_DST_END_W",    "NTP_DST_END_D",
                             RULE_TIME_END_MONTH, RULE_TIME_END_WEEK, RULE_TIME_END_WEEKDAY};

bool zone_has_daylight_saving();
// The edge as a date of the current year; set from a date.
int answer_edge(const Edge &edge, char *buf, unsigned int buflen);
int set_edge(const Edge &edge, const char *value, const Condition &);

} // namespace kova::time
