// The LTE bands: E-UTRA channel numbers and carrier frequencies (3GPP TS 36.101, table 5.7.3-1).
#include <kova/radio.h>

namespace {

constexpr LteBand fdd(uint32_t band, double dl_low, uint32_t dl_first, uint32_t dl_last, double ul_low,
                      uint32_t ul_first, uint32_t ul_last) {
  return {band, 0, dl_low, dl_first, dl_last, ul_low, ul_first, ul_last};
}
constexpr LteBand tdd(uint32_t band, double low, uint32_t first, uint32_t last) {
  return fdd(band, low, first, last, low, first, last);
}

} // namespace

// clang-format off
//      band    dl low   dl EARFCN      ul low  ul EARFCN
constexpr LteBand g_band_list[46] = {
    fdd( 1, 2110.0,     0,   599, 1920.0, 18000, 18599),
    fdd( 2, 1930.0,   600,  1199, 1850.0, 18600, 19199),
    fdd( 3, 1805.0,  1200,  1949, 1710.0, 19200, 19949),
    fdd( 4, 2110.0,  1950,  2399, 1710.0, 19950, 20399),
    fdd( 5,  869.0,  2400,  2649,  824.0, 20400, 20649),
    fdd( 6,  875.0,  2650,  2749,  830.0, 20650, 20749),
    fdd( 7, 2620.0,  2750,  3449, 2500.0, 20750, 21449),
    fdd( 8,  925.0,  3450,  3799,  880.0, 21450, 21799),
    fdd( 9, 1844.9,  3800,  4149, 1749.9, 21800, 22149),
    fdd(10, 2110.0,  4150,  4749, 1710.0, 22150, 22749),
    fdd(11, 1475.9,  4750,  4949, 1427.9, 22750, 22949),
    fdd(12,  729.0,  5010,  5179,  699.0, 23010, 23179),
    fdd(13,  746.0,  5180,  5279,  777.0, 23180, 23279),
    fdd(14,  758.0,  5280,  5379,  788.0, 23280, 23379),
    fdd(17,  734.0,  5730,  5849,  704.0, 23730, 23849),
    fdd(18,  860.0,  5850,  5999,  815.0, 23850, 23999),
    fdd(19,  875.0,  6000,  6149,  830.0, 24000, 24149),
    fdd(20,  791.0,  6150,  6449,  832.0, 24150, 24449),
    fdd(21, 1495.9,  6450,  6599, 1447.9, 24450, 24599),
    fdd(22, 3510.0,  6600,  7399, 3410.0, 24600, 25399),
    fdd(23, 2180.0,  7500,  7699, 2000.0, 25500, 25699),
    fdd(24, 1525.0,  7700,  8039, 1626.5, 25700, 26039),
    fdd(25, 1930.0,  8040,  8689, 1850.0, 26040, 26689),
    fdd(26,  859.0,  8690,  9039,  814.0, 26690, 27039),
    fdd(27,  852.0,  9040,  9209,  807.0, 27040, 27209),
    fdd(28,  758.0,  9210,  9659,  703.0, 27210, 27659),
    tdd(33, 1900.0, 36000, 36199),
    tdd(34, 2010.0, 36200, 36349),
    tdd(35, 1850.0, 36350, 36949),
    tdd(36, 1930.0, 36950, 37549),
    tdd(37, 1910.0, 37550, 37749),
    tdd(38, 2570.0, 37750, 38249),
    tdd(39, 1880.0, 38250, 38649),
    tdd(40, 2300.0, 38650, 39649),
    tdd(41, 2496.0, 39650, 41589),
    tdd(42, 3400.0, 41590, 43589),
    tdd(43, 3600.0, 43590, 45589),
    tdd(44,  703.0, 45590, 46589),
    tdd(45, 1447.0, 46590, 46789),
    tdd(46, 5150.0, 46790, 54539),
    tdd(47, 5855.0, 54540, 55239),
    tdd(48, 3550.0, 55240, 56739),
    // Private bands of this product. Band 63 pairs far-apart frequencies, band 62 has 191 channels.
    tdd(61, 1447.0, 65000, 65199),
    tdd(62, 1785.0, 65200, 65390),
    fdd(63, 5725.0, 64000, 64999, 5150.0, 63000, 63999),
    fdd( 0,    0.0,     0,     0,    0.0,     0,     0)};
// clang-format on

namespace {

// The end row counts: callers may ask for band 0.
const LteBand *find(unsigned int band) {
  for (const LteBand &row : g_band_list)
    if (row.band == band) return &row;
  return nullptr;
}

} // namespace

double getLowFreq(unsigned int band) {
  const LteBand *row = find(band);
  return row != nullptr ? row->dl_low_freq : 0.0;
}

double getHighFreq(unsigned int band) {
  const LteBand *row = find(band);
  return row != nullptr ? row->dl_low_freq + (row->dl_earfcn_high - row->dl_earfcn_low + 1) * 0.1 : 0.0;
}
