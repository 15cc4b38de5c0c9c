// Spectrum access.
#include "fake/fake.hpp"

#include <kova/sas.h>

using fake::get;
using fake::platform;
using fake::Strings;

namespace {

class Sas : public fake::Test {};

TEST_F(Sas, AnglesHaveTheirRanges) {
  struct {
    kova_setter *set;
    const char *value;
    int result;
  } const cases[] = {{sasSetTr069antennaAzimuth, "359", 0},   {sasSetTr069antennaAzimuth, "360", -1},
                     {sasSetTr069antennaAzimuth, "-1", -1},   {sasSetTr069antennaDowntilt, "-90", 0},
                     {sasSetTr069antennaDowntilt, "-91", -1}, {sasSetTr069antennaDowntilt, "91", -1},
                     {sasSetTr069antennaBeamwidth, "360", 0}, {sasSetTr069antennaBeamwidth, "361", -1},
                     {sasSetTr069antennaBeamwidth, "-1", -1}};
  for (const auto &[set, value, result] : cases)
    EXPECT_EQ(set(value), result) << value;
}

TEST_F(Sas, PlacesAreKeptInDegreesAndHeightsInTheDevicesUnit) {
  EXPECT_EQ(get(sasGetTr069CPIlatitude), "0");
  EXPECT_EQ(sasSetTr069CPIlatitude("37123456"), 0);
  EXPECT_EQ(platform.done.back(), "run logger -p 5 -t easycwmpd \"set SAS_CPI_LATITUDE=37.123456\"");
  EXPECT_EQ(platform.stored(0, "SAS_CPI_LATITUDE"), "37.123456");
  EXPECT_EQ(get(sasGetTr069CPIlatitude), "37123456");
  EXPECT_EQ(sasSetTr069CPIlongitude("-134217685"), 0); // rounded, not cut, on its way back
  EXPECT_EQ(platform.stored(0, "SAS_CPI_LONGITUDE"), "-134.217685");
  EXPECT_EQ(get(sasGetTr069CPIlongitude), "-134217685");

  EXPECT_EQ(sasSetTr069CPIheight("10.123456"), 0);
  EXPECT_EQ(get(sasGetTr069CPIheight), "10.1234"); // seven characters
  platform.nvram[{0, "SAS_CPI_HEIGHTUNIT"}] = "1";
  EXPECT_EQ(sasSetTr069CPIheight("10"), 0);
  EXPECT_EQ(platform.stored(0, "SAS_CPI_HEIGHT"), "32.81");
  EXPECT_EQ(get(sasGetTr069CPIheight), "10.00");
  EXPECT_EQ(sasSetTr069CPIheight("30480"), 0);
  EXPECT_EQ(platform.stored(0, "SAS_CPI_HEIGHT"), "100000.");

  platform.rules_asked.clear();
  platform.rule = [](int, const std::string &, int) { return -1; };
  for (kova_setter *set : {sasSetTr069CPIlatitude, sasSetTr069CPIlongitude, sasSetTr069CPIheight})
    EXPECT_EQ(set("1"), -1);
  EXPECT_EQ(platform.rules_asked, Strings(3, "7/49 1"));
}

TEST_F(Sas, TheSerialNumberMustBeKnown) {
  int result = 0;
  EXPECT_EQ(get(sasGetTr069cbsdSerialNumber, result), "");
  EXPECT_EQ(result, -1);
  platform.nvram[{9, "CACHE_SN"}] = "SN1";
  EXPECT_EQ(get(sasGetTr069cbsdSerialNumber), "SN1");
}

} // namespace
