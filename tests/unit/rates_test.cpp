// Rates and totals from the rate sampler's file.
#include "fake/fake.hpp"

#include <kova/radio.h>

using fake::get;
using fake::platform;
using fake::Strings;

namespace {

constexpr const char *rate_file = "/var/rate_info";

class Rates : public fake::Test {};

TEST_F(Rates, EachParameterTakesItsFieldOfTheNewestSampleOrTheExtremeOfAll) {
  platform.files[rate_file] = "1000: 200 11 18446744073709551615 50 13 14\n"
                              "990: 300 21 22 40 23 24\n"
                              "980: 100 31 32 60 33 34\n";
  const std::pair<kova_getter *, const char *> cases[] = {
      {kovaGetTR069Apn1RecvRateValue, "1600"}, {kovaGetTR069Apn1SendRateValue, "400"},
      {kovaGetTR069WANDLCurRateValue, "1600"}, {kovaGetTR069WANULCurRateValue, "400"},
      {kovaGetTR069Apn1RecvTotPktValue, "11"}, {kovaGetTR069Apn1RecvTotTptValue, "18446744073709551615"},
      {kovaGetTR069Apn1SendTotPktValue, "13"}, {kovaGetTR069Apn1SendTotTptValue, "14"},
      {kovaGetTR069WANDLMinRateValue, "800"},  {kovaGetTR069WANDLMaxRateValue, "2400"},
      {kovaGetTR069WANULMinRateValue, "320"},  {kovaGetTR069WANULMaxRateValue, "480"}};
  for (const auto &[getter, expected] : cases) {
    platform.locks.clear();
    EXPECT_EQ(get(getter), expected);
    EXPECT_EQ(platform.locks, (Strings{"exclusive at once", "unlock"}));
  }
}

// A sample of the given length, its newline included.
std::string sample(const char *time, std::size_t length) {
  std::string line = std::string(time) + ": 200 1 2 50 3 4";
  line.resize(length - 1, ' ');
  return line + "\n";
}

TEST_F(Rates, OnlyAWholeFreshFileCounts) {
  const std::string newest = "1000: 200 1 2 50 3 4\n", second = "990: 100 1 2 40 3 4\n";
  struct {
    const char *what;
    std::string file;
    const char *current, *least; // receive rate; the second reads all lines
    long uptime = 1000;
  } const cases[] = {
      {"two samples", newest + second, "1600", "800"},
      {"no newline at the end", newest + "990: 100 1 2 40 3 4", "1600", "800"},
      {"one sample", newest, "N/A", "N/A"},
      {"a blank line", newest + "\n" + second, "N/A", "N/A"},
      {"six fields in the first", "1000: 200 1 2 50 3\n" + second, "N/A", "N/A"},
      {"no colon", "1000 200 1 2 50 3 4\n" + second, "N/A", "N/A"},
      {"a malformed third line", newest + second + "980: 100 1\n", "1600", "N/A"},
      {"more than seven fields", "1000: 200 1 2 50 3 4 5 6\n" + second, "1600", "800"},
      {"exactly one interval old", newest + second, "1600", "800", 1010},
      {"older than one interval", newest + second, "N/A", "N/A", 1011},
      {"from the future", newest + second, "N/A", "N/A", 999},
      {"no interval, at its moment", newest + newest, "1600", "1600", 1000},
      {"no interval, later", newest + newest, "N/A", "N/A", 1001},
      {"time runs backwards", newest + "1010: 100 1 2 40 3 4\n", "1600", "800", 2000}, // the difference wraps
      {"the clock wraps", "5: 200 1 2 50 3 4\n4294967290: 100 1 2 40 3 4\n", "1600", "800", 16},
      {"1,024 characters", sample("1000", 1024) + sample("990", 1024), "1600", "1600"},
      {"1,025 characters", sample("1000", 1025) + sample("990", 1025), "N/A", "N/A"},
      {"a byte that is 0", newest + std::string("990\0: 100 1 2 40 3 4\n", 21), "N/A", "N/A"}};
  for (const auto &[what, file, current, least, uptime] : cases) {
    SCOPED_TRACE(what);
    platform.files[rate_file] = file;
    platform.uptime = uptime;
    EXPECT_EQ(get(kovaGetTR069Apn1RecvRateValue), current);
    EXPECT_EQ(get(kovaGetTR069WANDLMinRateValue), least);
  }
}

TEST_F(Rates, WhatIsNoRegularFileIsNeverReadOrWaitedFor) {
  EXPECT_EQ(get(kovaGetTR069WANDLCurRateValue), "N/A");
  platform.files[rate_file] = "1000: 200 1 2 50 3 4\n990: 100 1 2 40 3 4\n";
  for (const char kind : {'d', 'p'}) {
    platform.special_files[rate_file] = kind;
    EXPECT_EQ(get(kovaGetTR069WANDLCurRateValue), "N/A");
  }
  platform.special_files.clear();
  platform.files_open = false;
  EXPECT_EQ(get(kovaGetTR069WANDLCurRateValue), "N/A");
  platform.files_open = true;
  platform.knows_memory_and_uptime = false;
  EXPECT_EQ(get(kovaGetTR069WANDLCurRateValue), "N/A");
}

TEST_F(Rates, ALockedFileIsWaitedForAndReadEvenWithoutALock) {
  platform.files[rate_file] = "1000: 200 1 2 50 3 4\n990: 100 1 2 40 3 4\n";
  platform.locked_by_another = true;
  EXPECT_EQ(get(kovaGetTR069WANDLCurRateValue), "1600");
  EXPECT_EQ(platform.locks, (Strings{"exclusive at once", "exclusive", "unlock"}));
  platform.lockable = false;
  EXPECT_EQ(get(kovaGetTR069WANDLCurRateValue), "1600");
}

} // namespace
