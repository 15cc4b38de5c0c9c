// Spectrum access.
#include "fake/fake.hpp"
#include "sas/sas.h"

using fake::get;
using fake::platform;
using fake::Strings;

namespace {

class Sas : public fake::Test {};

TEST_F(Sas, SettingsAreJudgedStoredAndLogged) {
  enum { always, with_proxy };
  struct {
    kova_getter *get;
    kova_setter *set;
    std::string key;
    int item; // of the rule; 0: none is asked
    int allowed = always, section = 0;
  } const settings[] = {
// clang-format off
#define SAS(name) sasGetTr069##name, sasSetTr069##name
#define GRANT(name) kovaGetTR069##name, kovaSetTR069##name
      {SAS(enableMode), "SAS_ENABLEMODE", 49}, {SAS(useDP), "SAS_USEDP", 0}, {SAS(serverURL), "SAS_ADDRESS", 0},
      {SAS(sas_step_choice), "SAS_STEP_CHOICE", 54}, {SAS(UserId), "SAS_USERID", 49}, {SAS(fccId), "SAS_FCCID", 49},
      {SAS(callSign), "SAS_CALLSIGN", 49}, {SAS(cbsdCategory), "SAS_CBSD_CATEGORY", 49},
      {SAS(radioTechnology), "SAS_RADIO_TECHNOLOGY", 49}, {SAS(antennaGain), "SAS_ANTENNAGAIN", 49},
      {SAS(antennaAzimuth), "SAS_ANTENNAAZIMUTH", 0}, {SAS(antennaDowntilt), "SAS_ANTENNADOWNTILT", 0},
      {SAS(antennaBeamwidth), "SAS_ANTENNABEAMWIDTH", 0}, {SAS(antennaModel), "SAS_ANTENNAMODEL", 49},
      {SAS(CPIheightType), "SAS_CPI_HEIGHTTYPE", 49}, {SAS(CPIindoorDeployment), "SAS_CPI_INDOORDEPLYMENT", 49},
      {SAS(CPIgroupType), "SAS_CPI_GROUPTYPE", 49}, {SAS(CPIgroupId), "SAS_CPI_GROUPID", 49},
      {SAS(CPIcpiId), "SAS_CPI_CPIID", 49}, {SAS(CPIcpiName), "SAS_CPI_CPINAME", 49},
      {SAS(CPIinstallCertificationTime), "SAS_CPI_INSTALLTIME", 49}, {SAS(cellInfobandwidth), "SAS_CELL_BANDWIDTH", 49},
      {SAS(cellInfolowFrequency), "SAS_CELL_LOW", 49}, {SAS(cellInfohighFrequency), "SAS_CELL_HIGH", 49},
      {GRANT(ConfigmaxEirp), "SAS_CONFIG_MAXEIRP", 50}, {GRANT(ConfiglowFrequency), "SAS_CONFIG_LOW", 51},
      {GRANT(ConfighighFrequency), "SAS_CONFIG_HIGH", 52},
      {GRANT(SasOperationStatus), "SAS_OPERATION_STATUS", 0, with_proxy, 9},
      {GRANT(ConfigRadioEnable), "SAS_CONFIG_RADIOENABLE", 49, with_proxy},
      {GRANT(ConfigpowerSpectralDensity), "SAS_CONFIG_POWER", 53, with_proxy},
      {GRANT(ConfigtransmitExpireTime), "SAS_CONFIG_TRANSEXPIRETIME", 55, with_proxy}};
  // clang-format on
  for (const auto &[getter, set, key, item, allowed, section] : settings) {
    SCOPED_TRACE(key);
    platform = {};
    const auto asked = [item = item](const std::string &value) {
      return item == 0 ? Strings{} : Strings{"7/" + std::to_string(item) + " " + value};
    };
    EXPECT_EQ(set("a$b`c"), 0); // with a proxy that is neither on nor off
    EXPECT_EQ(platform.rules_asked, asked("a$b`c"));
    EXPECT_EQ(platform.done, (Strings{"nvram " + std::to_string(section) + " " + key + "=a$b`c",
                                      "run logger -p 5 -t easycwmpd \"set " + key + "=a\\$b\\`c\""}));
    EXPECT_EQ(get(getter), "a$b`c");
    EXPECT_EQ(set(nullptr), 0);
    EXPECT_EQ(get(getter), "");

    platform.done.clear();
    platform.rules_asked.clear();
    EXPECT_EQ(set("<b>"), -1);
    EXPECT_EQ(platform.rules_asked, asked("<b>")); // ahead of the markup check
    platform.rule = [](int, const std::string &, int) { return -1; };
    if (item != 0) {
      EXPECT_EQ(set("1"), -1);
    }
    EXPECT_TRUE(platform.done.empty());
    platform.rule = nullptr;
    platform.nvram[{0, "SAS_USEDP"}] = "0";
    EXPECT_EQ(set("1"), allowed == with_proxy ? -1 : 0);
    EXPECT_EQ(platform.done.empty(), allowed == with_proxy);
  }
}

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
  EXPECT_EQ(sasGetTr069cbsdSerialNumber(nullptr, 8), -1);
}

} // namespace
