// The LTE bands: E-UTRA channel numbers and carrier frequencies (3GPP TS 36.101, table 5.7.3-1).
#include <kova/radio.h>

// clang-format off
#define FDD(band, dl_low, dl_first, dl_last, ul_low, ul_first, ul_last) \
  {band, 0, dl_low, dl_first, dl_last, ul_low, ul_first, ul_last}
#define TDD(band, low, first, last) FDD(band, low, first, last, low, first, last)

//      band    dl low   dl EARFCN      ul low  ul EARFCN
const LteBand g_band_list[46] = {
    FDD( 1, 2110.0,     0,   599, 1920.0, 18000, 18599),
    FDD( 2, 1930.0,   600,  1199, 1850.0, 18600, 19199),
    FDD( 3, 1805.0,  1200,  1949, 1710.0, 19200, 19949),
    FDD( 4, 2110.0,  1950,  2399, 1710.0, 19950, 20399),
    FDD( 5,  869.0,  2400,  2649,  824.0, 20400, 20649),
    FDD( 6,  875.0,  2650,  2749,  830.0, 20650, 20749),
    FDD( 7, 2620.0,  2750,  3449, 2500.0, 20750, 21449),
    FDD( 8,  925.0,  3450,  3799,  880.0, 21450, 21799),
    FDD( 9, 1844.9,  3800,  4149, 1749.9, 21800, 22149),
    FDD(10, 2110.0,  4150,  4749, 1710.0, 22150, 22749),
    FDD(11, 1475.9,  4750,  4949, 1427.9, 22750, 22949),
    FDD(12,  729.0,  5010,  5179,  699.0, 23010, 23179),
    FDD(13,  746.0,  5180,  5279,  777.0, 23180, 23279),
    FDD(14,  758.0,  5280,  5379,  788.0, 23280, 23379),
    FDD(17,  734.0,  5730,  5849,  704.0, 23730, 23849),
    FDD(18,  860.0,  5850,  5999,  815.0, 23850, 23999),
    FDD(19,  875.0,  6000,  6149,  830.0, 24000, 24149),
    FDD(20,  791.0,  6150,  6449,  832.0, 24150, 24449),
    FDD(21, 1495.9,  6450,  6599, 1447.9, 24450, 24599),
    FDD(22, 3510.0,  6600,  7399, 3410.0, 24600, 25399),
    FDD(23, 2180.0,  7500,  7699, 2000.0, 25500, 25699),
    FDD(24, 1525.0,  7700,  8039, 1626.5, 25700, 26039),
    FDD(25, 1930.0,  8040,  8689, 1850.0, 26040, 26689),
    FDD(26,  859.0,  8690,  9039,  814.0, 26690, 27039),
    FDD(27,  852.0,  9040,  9209,  807.0, 27040, 27209),
    FDD(28,  758.0,  9210,  9659,  703.0, 27210, 27659),
    TDD(33, 1900.0, 36000, 36199),
    TDD(34, 2010.0, 36200, 36349),
    TDD(35, 1850.0, 36350, 36949),
    TDD(36, 1930.0, 36950, 37549),
    TDD(37, 1910.0, 37550, 37749),
    TDD(38, 2570.0, 37750, 38249),
    TDD(39, 1880.0, 38250, 38649),
    TDD(40, 2300.0, 38650, 39649),
    TDD(41, 2496.0, 39650, 41589),
    TDD(42, 3400.0, 41590, 43589),
    TDD(43, 3600.0, 43590, 45589),
    TDD(44,  703.0, 45590, 46589),
    TDD(45, 1447.0, 46590, 46789),
    TDD(46, 5150.0, 46790, 54539),
    TDD(47, 5855.0, 54540, 55239),
    TDD(48, 3550.0, 55240, 56739),
    // Private bands of this product. Band 63 pairs far-apart frequencies, band 62 has 191 channels.
    TDD(61, 1447.0, 65000, 65199),
    TDD(62, 1785.0, 65200, 65390),
    FDD(63, 5725.0, 64000, 64999, 5150.0, 63000, 63999),
    FDD( 0,    0.0,     0,     0,    0.0,     0,     0)};
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
