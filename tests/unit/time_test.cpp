// Time zone, network time and daylight saving.
#include "fake/fake.hpp"

#include <kova/time.h>

#include <chrono>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <sstream>

using fake::get;
using fake::platform;
using fake::Strings;

namespace {

class Time : public fake::Test {
protected:
  Time() { use_zone("UTC0"); }
  ~Time() override {
    unsetenv("TZ");
    tzset();
  }
  static void use_zone(const char *zone) {
    setenv("TZ", zone, 1);
    tzset();
  }
};

// ---- Zone

constexpr const char *zones = "-12:00 UCT_-12 off -11:00 SST_-11 off -10:00 HAS_-10 off -09:00 AKS_-09 - "
                              "-08:00 PST_-08 -   -07:00 MST_-07 -   -06:00 CST_-06 -   -05:00 UCT_-05 - "
                              "-04:00 CLT_-04 -   -03:30 N_-3:30 -   -03:00 WGT_-03 -   -02:00 UCT_-02 off "
                              "-01:00 AZO_-01 -   +00:00 GMT_000 -   +01:00 MEZ_001 -   +02:00 EET_002 - "
                              "+03:00 NAI_003 off +04:00 AZT_004 off +04:30 A_04:30 off +05:00 PKT_005 off "
                              "+05:30 I_05:30 off +05:45 N_05:45 off +06:00 BST_006 off +06:30 M_06:30 off "
                              "+07:00 WIB_007 off +08:00 CST_008 off +08:30 P_08:30 off +09:00 JST_009 off "
                              "+09:30 A_09:30 -   +10:00 AES_010 -   +11:00 MAG_011 off +12:00 NZS_012 - "
                              "+13:00 TOT_013 -";

TEST_F(Time, ZonesBothWays) {
  std::istringstream words(zones);
  int count = 0;
  for (std::string offset, code, daylight_saving; words >> offset >> code >> daylight_saving; ++count) {
    SCOPED_TRACE(offset);
    platform.done.clear();
    platform.rules_asked.clear();
    EXPECT_EQ(kovasetLocalTimeZone(offset.c_str()), 0);
    EXPECT_EQ(platform.done, daylight_saving == "off"
                                 ? (Strings{"nvram 0 NTPDaylightSaving=0", "nvram 0 TZ=" + code})
                                 : Strings{"nvram 0 TZ=" + code});
    EXPECT_EQ(platform.rules_asked, Strings{"4/17 " + code});
    testing::internal::CaptureStdout();
    EXPECT_EQ(get(kovaGetLocalTimeZone), offset);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), code[1] == '_' ? code.substr(1) + "\n" : "");
  }
  EXPECT_EQ(count, 33);
  for (const auto &[code, offset] : {std::pair{"UCT_-08", "-08:00"},
                                     {"ANK_002", "+02:00"},
                                     {"+13:30", "+13:30"},
                                     {"", ""},
                                     {"UTC", "UTC"},
                                     {"_", ":00"},
                                     {"WST_013", "+13:00"}}) {
    platform.nvram[{0, "TZ"}] = code;
    EXPECT_EQ(get(kovaGetLocalTimeZone), offset) << code;
  }
}

TEST_F(Time, ZonesWithDaylightSaving) {
  const std::string with =
      "AKS_-09 PST_-08 UCT_-08 MST_-07 UCT_-07 CST_-06 GMT_-06 UCT_-05 CLT_-04 N_-3:30 WGT_-03 "
      "BRT_-03 AZO_-01 GMT_000 CET_001 MEZ_001 EET_002 ANK_002 A_09:30 AES_010 FJT_012 NZS_012 "
      "WST_013 ";
  std::istringstream words(std::string(zones) + " " + with + "gmt_000 GMT_0000 +01:00 x");
  for (std::string code; words >> code;) {
    SCOPED_TRACE(code);
    platform.nvram = {{{0, "TZ"}, code}};
    platform.done.clear();
    const int result = with.find(code + " ") != std::string::npos ? 0 : -1;
    EXPECT_EQ(kovaCheckLocalTimeZone(), result);
    EXPECT_EQ(kovasetDaylightSavingsUsed("1"), result);
    EXPECT_EQ(kovasetDaylightSavingsStart("2024-03-10T02:00:00"), result);
    EXPECT_EQ(kovasetDaylightSavingsEnd("2024-11-03T02:00:00"), result);
    EXPECT_EQ(platform.done.size(), result == 0 ? 7U : 0U);
  }
  platform.nvram.clear();
  EXPECT_EQ(kovaCheckLocalTimeZone(), -1);
}

// ---- Start and end of daylight saving

std::string date_text(std::chrono::year_month_day date, const char *time) {
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%s", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()), time);
  return text;
}

TEST_F(Time, EveryDayOfSixYearsComesBackFromItsWeekdayAndWeek) {
  using namespace std::chrono;
  for (const char *zone : {"UTC0", "CET-1CEST,M3.5.0,M10.5.0/3", "<+1245>-12:45"}) {
    use_zone(zone);
    for (sys_days day = 2023y / January / 1; day < sys_days{2029y / January / 1}; day += days{1}) {
      const year_month_day date(day);
      const std::string text = date_text(date, "12:34:56");
      SCOPED_TRACE(text);
      platform.nvram = {{{0, "TZ"}, "MEZ_001"}};
      tm noon = {};
      noon.tm_year = static_cast<int>(date.year()) - 1900;
      noon.tm_mday = 17;
      noon.tm_hour = 12;
      noon.tm_min = 21;
      platform.now = mktime(&noon); // noon on the 17th of January of that year
      ASSERT_EQ(kovasetDaylightSavingsEnd(text.c_str()), 0);
      const unsigned int of_month = static_cast<unsigned>(date.day());
      const unsigned int first = weekday(sys_days{date.year() / date.month() / 1}).c_encoding();
      ASSERT_EQ(platform.stored(0, "NTP_DST_END_M"), std::to_string(static_cast<unsigned>(date.month())));
      ASSERT_EQ(platform.stored(0, "NTP_DST_END_D"), std::to_string(weekday(day).c_encoding()));
      ASSERT_EQ(platform.stored(0, "NTP_DST_END_W"), std::to_string((of_month - 1 + first) / 7 + 1));
      ASSERT_EQ(get(kovaGetDaylightSavingsEnd), date_text(date, "12:00:00"));
    }
  }
}

TEST_F(Time, EveryDateIsAMomentWhateverTheClockCanTell) {
  platform.preset(0, "TZ=GMT_000");
  const auto stored = [](const char *date) {
    platform.done.clear();
    EXPECT_EQ(kovasetDaylightSavingsStart(date), 0) << date;
    return platform.done;
  };
  EXPECT_EQ(
      stored("1969-12-31T23:59:59"), // mktime answers -1
      (Strings{"nvram 0 NTP_DST_START_M=12", "nvram 0 NTP_DST_START_D=3", "nvram 0 NTP_DST_START_W=5"}));
  for (const char *date : {"2038-01-20T00:00:00", "2040-02-29T12:00:00", "2100-02-29T12:00:00",
                           "2399-12-31T23:59:59", "999999-03-10T00:00:00"}) {
    platform.clock_ends_in_2038 = false;
    const Strings of_a_long_clock = stored(date);
    platform.clock_ends_in_2038 = true;
    EXPECT_EQ(stored(date), of_a_long_clock) << date;
  }
  for (const int absurd : {INT_MIN, INT_MAX}) // no arithmetic overflows
    getDaylightDateTime(absurd, -absurd - 1, absurd);
}

// ---- Date-time texts and the clock

TEST_F(Time, DateTimeTexts) {
  struct {
    const char *text, *fields; // year month day hour minute second; NULL: refused
    // clang-format off
  } const cases[] = {
      {"2024-03-10T02:04:05", "124 2 10 2 4 5"}, {"2024 03-10T02:04:05", "124 2 10 2 4 5"}, // a blank ends the first field only
      {"2024-03-10 02:04:05", nullptr}, {"2024-03-10T02:04:05Z", "124 2 10 2 4 5"},
      {"--2024--03-10T:02:04:05", "124 2 10 2 4 5"},
      {"2024-13-32T25:61:61", "124 12 32 25 61 61"},
      {"a-b-cTd:e:f", "-1900 -1 0 0 0 0"}, {"2024-03-10T02:04:%%5", "124 2 10 2 4 0"},
      {"2024-03-10T02:04:000000000000579", "124 2 10 2 4 57"}, // 31 characters count
      {"2024-03-10T02:04", nullptr}, {"2024-03-10T", nullptr}, {"20240310020405", nullptr}, {"-T:", nullptr},
      {"", nullptr}, {"2024-03-10T02:04:%s", nullptr}, {"%n2024-03-10T02:04:05", nullptr}};
  // clang-format on
  for (const auto &[text, fields] : cases) {
    SCOPED_TRACE(text != nullptr ? text : "NULL");
    tm date;
    std::memset(&date, 0x55, sizeof date);
    ASSERT_EQ(getDateTime(text, &date), fields != nullptr ? 0 : -1);
    if (fields == nullptr) continue;
    std::ostringstream read;
    read << date.tm_year << ' ' << date.tm_mon << ' ' << date.tm_mday << ' ' << date.tm_hour << ' '
         << date.tm_min << ' ' << date.tm_sec;
    EXPECT_EQ(read.str(), fields);
    EXPECT_EQ(date.tm_isdst, -1);
  }
  tm any;
  for (const char *beyond : {"2147483648-01-01T00:00:00", "2024-2147483648-1T0:0:0", "99999999999-1-1T0:0:0"})
    getDateTime(beyond, &any); // survived
  char text[256];
  tm date = {};
  setDateTime(text, &date);
  EXPECT_STREQ(text, "1900-01-00T00:00:00");
}

TEST_F(Time, LocalTimeFollowsTheZoneThatTheScriptDerives) {
  platform.now = 1718109296;
  EXPECT_EQ(get(kovaGetCurrentLocalTime), "2024-06-11T12:34:56");
  platform.exit_status = 3;
  EXPECT_EQ(SyncfromNetworkTime(), 3); // no zone is derived: it stays
  EXPECT_STREQ(getenv("TZ"), "UTC0");
  platform.watch = [] {
    if (platform.done.back() == "run /etc/sysconfig/script/ntp.sh envTZ")
      platform.preset(0, "envTZ=EET-2EEST,M3.5.0/3,M10.5.0/4");
  };
  platform.done.clear();
  EXPECT_EQ(kovasetNTPApply("1"), 0);
  EXPECT_EQ(platform.done,
            (Strings{"run /etc/sysconfig/script/ntp.sh envTZ", "run /etc/sysconfig/script/ntp.sh"}));
  EXPECT_STREQ(getenv("TZ"), "EET-2EEST,M3.5.0/3,M10.5.0/4");
  EXPECT_EQ(get(kovaGetCurrentLocalTime), "2024-06-11T15:34:56");
  platform.done.clear();
  for (const char *value : {"0", "11", "true"})
    EXPECT_EQ(kovasetNTPApply(value), -1);
  EXPECT_TRUE(platform.done.empty());
}

} // namespace
