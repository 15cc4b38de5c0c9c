#include "host_test.hpp"
#include "platform/lte.h"
#include "platform/nvram.h"

#include <vector>

namespace {

class Lte : public HostTest {
protected:
  static std::vector<int> bands(const char *setting) {
    nvram_bufset(0, "lte_supported_bands", setting);
    lted_client *client = new_lted_client();
    RrcBandList list = {};
    EXPECT_EQ(client == nullptr ? -1 : 0, rrc_band_list_get(client, &list));
    destory_lted_client(client);
    return {list.band, list.band + list.count};
  }
};

TEST_F(Lte, TheDaemonListsTheBandsOfTheSetting) {
  EXPECT_EQ(nullptr, new_lted_client()) << "no setting";
  EXPECT_EQ(bands("1,3,48"), (std::vector{1, 3, 48}));
  EXPECT_EQ(bands("41"), std::vector{41});
  EXPECT_EQ(bands("").size(), 0U);
  std::vector<int> listed;
  const std::string console = console_of([&] { listed = bands("1,x,,-3,65536,0,3a,7,"); });
  EXPECT_EQ(listed, (std::vector{1, 7}));
  for (const char *piece : {"\"x\"", "\"\"", "\"-3\"", "\"65536\"", "\"0\"", "\"3a\""})
    EXPECT_NE(console.find(piece), std::string::npos) << piece;
  std::string many = "1";
  for (int i = 0; i < 300; ++i)
    many += ",1";
  console_of([&] { listed = bands(many.c_str()); });
  EXPECT_EQ(listed.size(), 255U);
}

TEST(LteBands, AreFoundByNumberAndByChannel) {
  constexpr int fdd = 0, tdd = 1, none = -1;
  const struct {
    int earfcn, band, duplex;
  } channels[] = {{0, 1, fdd},      {599, 1, fdd},    {600, 2, fdd},    {1300, 3, fdd},   {1949, 3, fdd},
                  {1950, 4, fdd},   {4950, 0, none},  {9659, 28, fdd},  {9660, 0, none},  {35999, 0, none},
                  {36000, 33, tdd}, {39650, 41, tdd}, {56739, 48, tdd}, {56740, 0, none}, {-1, 0, none}};
  for (const auto &[earfcn, band, duplex] : channels) {
    BandInfo by_channel = {none, 0, 0, 0}, by_number = by_channel;
    EXPECT_EQ(duplex == none ? -1 : 0, get_band_info_by_earfcn(earfcn, &by_channel)) << earfcn;
    EXPECT_EQ(band, by_channel.band) << earfcn;
    EXPECT_EQ(duplex, by_channel.duplex) << earfcn;
    EXPECT_EQ(duplex == none ? -1 : 0, get_band_info(band, &by_number)) << earfcn;
    EXPECT_TRUE(band == 0 || (by_number.earfcn_low <= earfcn && earfcn <= by_number.earfcn_high)) << earfcn;
  }
  for (const int unknown : {0, 15, 29, 49, -3})
    EXPECT_NE(0, get_band_info(unknown, nullptr)) << unknown;
}

} // namespace
