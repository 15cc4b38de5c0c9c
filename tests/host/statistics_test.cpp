#include "host_test.hpp"
#include "platform/nvram.h"

#include <fstream>
#include <string>

namespace {

class Statistics : public HostTest {};

TEST_F(Statistics, CountersComeFromTheKernel) {
  for (const int counter : {10, 11, 2, 3})
    EXPECT_LE(0, tarn_get_if_statistic("lo", counter)) << counter;
  EXPECT_EQ(-1, tarn_get_if_statistic("lo", 0));
  for (const char *name : {"", ".", "..", "../net/lo", "lo/", "no-such-if", "a-name-that-is-too-long"})
    EXPECT_EQ(-1, tarn_get_if_statistic(name, 10)) << name;
}

TEST_F(Statistics, WanIsTheCurrentDataInterface) {
  char text[64] = "old";
  EXPECT_NE(0, tarn_get_ifname_statistic("wan", text, sizeof text, 10)) << "no LTE link on a host";
  EXPECT_NE(0, tarn_get_ifname_statistic("elsewhere", text, sizeof text, 10));
  EXPECT_NE(0, tarn_get_wlan_if_statistic(text, sizeof text, 10, 99, 1));
  EXPECT_STREQ(text, "old");
  nvram_bufset(9, "curr_data_if", "lo");
  EXPECT_NE(0, tarn_get_ifname_statistic("wan", text, 1, 10)) << "no room";
  EXPECT_STREQ(text, "old");
  ASSERT_EQ(0, tarn_get_ifname_statistic("wan", text, sizeof text, 10));
  EXPECT_EQ(std::string(text).find_first_not_of("0123456789"), std::string::npos) << text;
}

TEST_F(Statistics, InterfacesAndUptime) {
  EXPECT_EQ(0, tarn_is_interface_exist("lo"));
  EXPECT_NE(0, tarn_is_interface_exist("no-such-if"));
  char mac[18] = "old";
  EXPECT_NE(0, tarn_getIfMac("no-such-if", mac, sizeof mac));
  EXPECT_NE(0, tarn_getIfMac("lo", mac, sizeof mac - 1));
  EXPECT_STREQ(mac, "old");
  ASSERT_EQ(0, tarn_getIfMac("lo", mac, sizeof mac));
  EXPECT_STREQ(mac, "00:00:00:00:00:00");
  double uptime = 0;
  std::ifstream("/proc/uptime") >> uptime;
  EXPECT_NEAR(static_cast<double>(tarn_get_uptime()), uptime, 2);
}

} // namespace
