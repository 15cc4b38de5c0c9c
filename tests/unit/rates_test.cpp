// Rates and totals from the rate sampler's file.
#include "fake/fake.hpp"

#include <kova/radio.h>

using fake::get;
using fake::platform;
using fake::Strings;

namespace {

constexpr const char *rate_file = "/var/rate_info";

class Rates : public fake::Test {};

// A sample of the given length, its newline included.
std::string sample(const char *time, std::size_t length) {
  std::string line = std::string(time) + ": 200 1 2 50 3 4";
  line.resize(length - 1, ' ');
  return line + "\n";
}

TEST_F(Rates, LinesOfUpTo1024CharactersWithoutABinaryZeroCount) {
  const std::pair<std::string, const char *> cases[] = {
      {sample("1000", 1024) + sample("990", 1024), "1600"},
      {sample("1000", 1025) + sample("990", 1025), "N/A"},
      {sample("1000", 25) + std::string("990\0: 100 1 2 40 3 4\n", 21), "N/A"}};
  for (const auto &[file, rate] : cases) {
    platform.files[rate_file] = file;
    EXPECT_EQ(get(kovaGetTR069Apn1RecvRateValue), rate);
    EXPECT_EQ(get(kovaGetTR069WANDLMinRateValue), rate);
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
