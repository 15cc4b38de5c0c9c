// The LTE bands by their downlink channel numbers (3GPP TS 36.101). Bands without an uplink cannot serve a router alone.
#include "platform/lte.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr int fdd = 0, tdd = 1;

// clang-format off
constexpr BandInfo bands[] = {
    {fdd,  1,     0,   599}, {fdd,  2,   600,  1199}, {fdd,  3,  1200,  1949}, {fdd,  4,  1950,  2399},
    {fdd,  5,  2400,  2649}, {fdd,  6,  2650,  2749}, {fdd,  7,  2750,  3449}, {fdd,  8,  3450,  3799},
    {fdd,  9,  3800,  4149}, {fdd, 10,  4150,  4749}, {fdd, 11,  4750,  4949}, {fdd, 12,  5010,  5179},
    {fdd, 13,  5180,  5279}, {fdd, 14,  5280,  5379}, {fdd, 17,  5730,  5849}, {fdd, 18,  5850,  5999},
    {fdd, 19,  6000,  6149}, {fdd, 20,  6150,  6449}, {fdd, 21,  6450,  6599}, {fdd, 22,  6600,  7399},
    {fdd, 23,  7500,  7699}, {fdd, 24,  7700,  8039}, {fdd, 25,  8040,  8689}, {fdd, 26,  8690,  9039},
    {fdd, 27,  9040,  9209}, {fdd, 28,  9210,  9659}, {fdd, 30,  9770,  9869}, {fdd, 31,  9870,  9919},
    {tdd, 33, 36000, 36199}, {tdd, 34, 36200, 36349}, {tdd, 35, 36350, 36949}, {tdd, 36, 36950, 37549},
    {tdd, 37, 37550, 37749}, {tdd, 38, 37750, 38249}, {tdd, 39, 38250, 38649}, {tdd, 40, 38650, 39649},
    {tdd, 41, 39650, 41589}, {tdd, 42, 41590, 43589}, {tdd, 43, 43590, 45589}, {tdd, 44, 45590, 46589},
    {tdd, 45, 46590, 46789}, {tdd, 46, 46790, 54539}, {tdd, 47, 54540, 55239}, {tdd, 48, 55240, 56739},
};
// clang-format on

template <class Wanted>
int find(Wanted wanted, BandInfo *info) {
  const auto *const band = std::ranges::find_if(bands, wanted);
  if (band == std::end(bands) || info == nullptr) return -1;
  *info = *band;
  return 0;
}

} // namespace

int get_band_info(int band, BandInfo *info) {
  return find([band](const BandInfo &row) { return row.band == band; }, info);
}

int get_band_info_by_earfcn(int earfcn, BandInfo *info) {
  const auto holds = [earfcn](const BandInfo &row) {
    return earfcn >= row.earfcn_low && earfcn <= row.earfcn_high;
  };
  return find(holds, info);
}
