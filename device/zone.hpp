// The POSIX text of a time zone, which libc understands, from the settings of the device's web pages.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kova::device {

struct Changeover {
  int month, week, weekday; // 1 to 12, row of the calendar month from 1, 0 for Sunday
};

struct DaylightSaving {
  Changeover start, end;
};

// The code is "MEZ_001", "A_09:30" or the like, or an offset: "+13:30". Anything else reads as UTC. The rows
// of a month lie otherwise each year, so the text holds for the one year.
std::string posix_zone(std::string_view code, const std::optional<DaylightSaving> &saving, int year);
// Stores the text of the stored settings, for this year, as "envTZ".
void store_posix_zone();

} // namespace kova::device
