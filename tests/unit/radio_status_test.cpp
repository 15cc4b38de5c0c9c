// The band table, the serving cell and the link.
#include "fake/fake.hpp"

#include <kova/radio.h>

#include <cmath>
#include <cstring>
#include <iterator>
#include <memory>

using fake::get;
using fake::platform;

namespace {

class Radio : public fake::Test {};

// ---- The band table, against the bands' frequencies: a channel is 100 kHz wide, a band's channel numbers follow those
// of the band before it, and uplink numbers are 18000 above the downlink's.

struct Band {
  unsigned int number;
  double low, high;      // downlink, MHz
  double separation = 0; // downlink above uplink, MHz; 0: one range for both
};
constexpr Band public_bands[] = {
    {1, 2110, 2170, 190},    {2, 1930, 1990, 80},      {3, 1805, 1880, 95},      {4, 2110, 2155, 400},
    {5, 869, 894, 45},       {6, 875, 885, 45},        {7, 2620, 2690, 120},     {8, 925, 960, 45},
    {9, 1844.9, 1879.9, 95}, {10, 2110, 2170, 400},    {11, 1475.9, 1495.9, 48}, {12, 729, 746, 30},
    {13, 746, 756, -31},     {14, 758, 768, -30},      {17, 734, 746, 30},       {18, 860, 875, 45},
    {19, 875, 890, 45},      {20, 791, 821, -41},      {21, 1495.9, 1510.9, 48}, {22, 3510, 3590, 100},
    {23, 2180, 2200, 180},   {24, 1525, 1559, -101.5}, {25, 1930, 1995, 80},     {26, 859, 894, 45},
    {27, 852, 869, 45},      {28, 758, 803, 55},       {33, 1900, 1920},         {34, 2010, 2025},
    {35, 1850, 1910},        {36, 1930, 1990},         {37, 1910, 1930},         {38, 2570, 2620},
    {39, 1880, 1920},        {40, 2300, 2400},         {41, 2496, 2690},         {42, 3400, 3600},
    {43, 3600, 3800},        {44, 703, 803},           {45, 1447, 1467},         {46, 5150, 5925},
    {47, 5855, 5925},        {48, 3550, 3700}};
// Where channel numbers do not go on from the band before.
unsigned int first_channel(unsigned int band, unsigned int next) {
  return band == 12 ? 5010 : band == 17 ? 5730 : band == 23 ? 7500 : band == 33 ? 36000 : next;
}

TEST_F(Radio, ThePublicBandsAreTheStandardsOnes) {
  unsigned int next = 0;
  const LteBand *row = g_band_list;
  for (const auto &[number, low, high, separation] : public_bands) {
    SCOPED_TRACE(number);
    const unsigned int first = first_channel(number, next);
    next = first + static_cast<unsigned int>(std::lround((high - low) * 10));
    const unsigned int uplink = separation != 0 ? 18000 : 0;
    EXPECT_EQ(row->band, number);
    EXPECT_EQ(row->reserved, 0U);
    EXPECT_DOUBLE_EQ(row->dl_low_freq, low);
    EXPECT_EQ(row->dl_earfcn_low, first);
    EXPECT_EQ(row->dl_earfcn_high, next - 1);
    EXPECT_DOUBLE_EQ(row->ul_low_freq, low - separation);
    EXPECT_EQ(row->ul_earfcn_low, first + uplink);
    EXPECT_EQ(row->ul_earfcn_high, next - 1 + uplink);
    EXPECT_DOUBLE_EQ(getLowFreq(number), low);
    EXPECT_NEAR(getHighFreq(number), high, 1e-9);
    ++row;
  }
  const LteBand others[] = {{61, 0, 1447.0, 65000, 65199, 1447.0, 65000, 65199},
                            {62, 0, 1785.0, 65200, 65390, 1785.0, 65200, 65390},
                            {63, 0, 5725.0, 64000, 64999, 5150.0, 63000, 63999},
                            {}};
  ASSERT_EQ(std::end(g_band_list) - row, std::ssize(others));
  static_assert(sizeof(LteBand) == 40);
  EXPECT_EQ(std::memcmp(row, others, sizeof others), 0);
}

TEST_F(Radio, LookUpsOfOtherBands) {
  EXPECT_EQ(getLowFreq(0), 0.0);
  EXPECT_EQ(getHighFreq(0), 0.1); // the end row matches
  EXPECT_NEAR(getHighFreq(62), 1804.1, 1e-9);
  EXPECT_NEAR(getHighFreq(63), 5825.0, 1e-9);
  for (const unsigned int band : {15U, 16U, 29U, 32U, 49U, 60U, 64U, ~0U})
    EXPECT_EQ(getLowFreq(band) + getHighFreq(band), 0.0) << band;
}

TEST_F(Radio, FieldsAreCutAtTheirRoom) {
  platform.nvram[{9, "lte_dl_mcs"}] = std::string(300, 'x');
  EXPECT_EQ(get(kovaGetTR069DLMcsValue, 300).size(), 254U);
  const std::string digits = "12345678901234567890";
  for (std::size_t length = 0; length <= digits.size(); ++length) {
    platform.nvram[{9, "lte_cur_plmn"}] = digits.substr(0, length);
    EXPECT_EQ(get(kovaGetTR069MCCValue), digits.substr(0, std::min<std::size_t>(length, 3)));
    const std::size_t mnc = length == 6 ? 3 : length > 5 ? 2 : length > 3 ? length - 3 : 0;
    EXPECT_EQ(get(kovaGetTR069MNCValue), digits.substr(3, mnc)) << length;
  }
}

TEST_F(Radio, SignalTexts) {
  char text[] = "7";
  EXPECT_STREQ(getInternetStatusPCI_vals(text), "7");
  EXPECT_STREQ(getInternetStatusTXPWR_vals(text), "NONE");
  EXPECT_STREQ(getInternetStatusRSSI_vals(nullptr), "NONE");
  struct {
    const char *published, *rewritten;
  } const frequencies[] = {{"26550", "2655.0"}, {"2655.0", "265.50"}, {"7", ".7"},    {"7.", ".7"},
                           {".5", ".5"},        {"N/A", "N/A"},       {"-1", "NONE"}, {"", "NONE"}};
  for (const auto &[published, rewritten] : frequencies)
    for (const int which : {1, 0, 2}) {
      platform.nvram = {{{9, which == 1 ? "lte_cur_freq" : "lte_cur_ulfreq"}, published}};
      const std::unique_ptr<char, decltype(&free)> frequency(getInternetStatusFrequency_vals(which), free);
      EXPECT_STREQ(frequency.get(), rewritten) << published;
    }
  const std::unique_ptr<char, decltype(&free)> bandwidth(getInternetStatusBandwidth_vals(), free);
  EXPECT_STREQ(bandwidth.get(), "NONE");
}

TEST_F(Radio, TheChannelOfTheCarrier) {
  const auto carrier = [](const char *band, const char *frequency, const char *expected) {
    SCOPED_TRACE(std::string(band) + " at " + frequency);
    platform.nvram = {{{9, "lte_cur_band"}, band}, {{9, "lte_cur_freq"}, frequency}};
    EXPECT_EQ(get(kovaGetTR069EARFCNValue), expected);
    char out[16] = "?";
    EXPECT_EQ(getInternetDLEARFCN_vals(out, sizeof out), *expected == '\0' ? -1 : 0);
    EXPECT_STREQ(out, *expected == '\0' ? "?" : expected);
  };
  carrier("3", "18150", "1300");
  carrier("3x", "18050", "1200");
  carrier("63", "57250", "64000");
  carrier("3", "18049", "1200");    // -1 and the guard, truncated toward zero
  carrier("3", "18048", "1199");    // below the band: not looked at
  carrier("3", "1815.0", "-15034"); // a published point is moved: 181.50 MHz
  for (const char *band : {"", "0", "15", "99", "-3", "x"})
    carrier(band, "18150", "");
  for (const char *frequency : {"", "-1", "N/A", "1e99", "nan1", "99999999999999999999"})
    carrier("3", frequency, "");
  // Every channel of every band comes back, whatever binary fractions its frequency has.
  for (const LteBand *row = g_band_list; row->band != 0; ++row)
    for (unsigned int channel = row->dl_earfcn_low; channel <= row->dl_earfcn_high; ++channel) {
      const long frequency =
          std::lround(row->dl_low_freq * 10) + static_cast<long>(channel - row->dl_earfcn_low);
      platform.nvram = {{{9, "lte_cur_band"}, std::to_string(row->band)},
                        {{9, "lte_cur_freq"}, std::to_string(frequency)}};
      platform.keys_read.clear();
      char out[16];
      ASSERT_EQ(getInternetDLEARFCN_vals(out, sizeof out), 0);
      ASSERT_EQ(out, std::to_string(channel)) << row->band;
    }
}

} // namespace
