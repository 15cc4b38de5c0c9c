#include "device/zone.hpp"

#include "device/formatted.hpp"
#include "platform/host/nvram_admin.hpp"
#include "platform/host/whole_number.hpp"
#include "platform/keys.hpp"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace kova::device {
namespace {

namespace calendar = std::chrono;

constexpr int hour = 60; // minutes

// "001", "-08", "09:30", "-3:30", "+13:30" as minutes east of Greenwich.
std::optional<int> minutes(std::string_view offset) {
  const bool west = offset.starts_with('-');
  if (west || offset.starts_with('+')) offset.remove_prefix(1);
  const std::size_t colon = offset.find(':');
  const auto hours = host::whole_number<int>(offset.substr(0, colon));
  const auto rest = colon == std::string_view::npos ? 0 : host::whole_number<int>(offset.substr(colon + 1));
  if (!hours || !rest || *hours < 0 || *hours > 14 || *rest < 0 || *rest > 59) return std::nullopt;
  return (west ? -1 : 1) * (*hours * hour + *rest);
}

bool is_name(std::string_view letters) {
  return letters.size() == 3 && std::ranges::all_of(letters, [](char c) { return c >= 'A' && c <= 'Z'; });
}

// A zone without a name of at least three letters is named by its offset.
std::string numeric_name(int offset) {
  const int size = std::abs(offset);
  return formatted("<%c%02d%02d>", offset < 0 ? '-' : '+', size / hour, size % hour);
}

// POSIX counts westwards.
std::string westward(int offset) {
  const int size = std::abs(offset);
  const std::string hours = formatted("%s%d", offset > 0 ? "-" : "", size / hour);
  return size % hour == 0 ? hours : hours + formatted(":%02d", size % hour);
}

bool is_possible(const Changeover &changeover) {
  return changeover.month >= 1 && changeover.month <= 12 && changeover.week >= 1 && changeover.week <= 6 &&
         changeover.weekday >= 0 && changeover.weekday <= 6;
}

// POSIX knows the first to fifth such weekday of a month, not the rows of a calendar.
std::string posix_rule(const Changeover &changeover, int year) {
  const calendar::year_month month = calendar::year(year) / changeover.month;
  const auto first = static_cast<int>(calendar::weekday(calendar::sys_days(month / 1)).c_encoding());
  const auto last = static_cast<int>(static_cast<unsigned>((month / calendar::last).day()));
  int day = changeover.weekday - first + 1 + (changeover.week - 1) * 7;
  if (day < 1) day += 7;
  while (day > last)
    day -= 7;
  return formatted(",M%d.%d.%d", changeover.month, (day - 1) / 7 + 1, changeover.weekday);
}

std::string stored(const std::string &key) {
  return host::nvram_find(host::configuration_section, key).value_or("");
}

Changeover stored_changeover(const std::string &prefix) {
  const auto part = [&prefix](const char *name) {
    return host::whole_number<int>(stored(prefix + name)).value_or(-1);
  };
  return {part("M"), part("W"), part("D")};
}

} // namespace

std::string posix_zone(std::string_view code, const std::optional<DaylightSaving> &saving, int year) {
  const std::size_t separator = code.find('_');
  const std::string letters(separator == std::string_view::npos ? "" : code.substr(0, separator));
  const auto offset = minutes(separator == std::string_view::npos ? code : code.substr(separator + 1));
  if (!offset) return "UTC0";
  std::string zone = (is_name(letters) ? letters : numeric_name(*offset)) + westward(*offset);
  if (!saving || !is_possible(saving->start) || !is_possible(saving->end)) return zone;
  return zone + (is_name(letters) ? letters + "DST" : numeric_name(*offset + hour)) +
         posix_rule(saving->start, year) + posix_rule(saving->end, year);
}

void store_posix_zone() {
  std::optional<DaylightSaving> saving;
  if (stored(key::daylight_saving) == "1")
    saving = {stored_changeover("NTP_DST_START_"), stored_changeover("NTP_DST_END_")};
  const auto today = calendar::floor<calendar::days>(calendar::system_clock::now());
  const auto year = static_cast<int>(calendar::year_month_day(today).year());
  const host::NvramEntry zone{host::configuration_section, "envTZ", posix_zone(stored("TZ"), saving, year)};
  host::nvram_store({&zone, 1});
}

} // namespace kova::device
