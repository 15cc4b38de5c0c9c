// Spectrum access.
#include "fake/fake.hpp"
#include "sas/sas.h"

using fake::get;
using fake::platform;
using fake::Strings;

namespace {

class Sas : public fake::Test {};

TEST_F(Sas, SettingsAreJudgedStoredAndLogged) {
  struct {
    kova_getter *get;
    kova_setter *set;
    std::string key, rule; // "": none
    int section = 0;
  } const settings[] = {
      {sasGetTr069enableMode, sasSetTr069enableMode, "SAS_ENABLEMODE", "7/49"},
      {sasGetTr069useDP, sasSetTr069useDP, "SAS_USEDP", ""},
      {sasGetTr069serverURL, sasSetTr069serverURL, "SAS_ADDRESS", ""},
      {sasGetTr069sas_step_choice, sasSetTr069sas_step_choice, "SAS_STEP_CHOICE", "7/54"},
      {sasGetTr069CPIcpiName, sasSetTr069CPIcpiName, "SAS_CPI_CPINAME", "7/49"},
      {kovaGetTR069ConfigmaxEirp, kovaSetTR069ConfigmaxEirp, "SAS_CONFIG_MAXEIRP", "7/50"},
      {kovaGetTR069ConfiglowFrequency, kovaSetTR069ConfiglowFrequency, "SAS_CONFIG_LOW", "7/51"},
      {kovaGetTR069ConfighighFrequency, kovaSetTR069ConfighighFrequency, "SAS_CONFIG_HIGH", "7/52"},
      {kovaGetTR069SasOperationStatus, kovaSetTR069SasOperationStatus, "SAS_OPERATION_STATUS", "", 9}};
  for (const auto &setting : settings) {
    SCOPED_TRACE(setting.key);
    platform.done.clear();
    platform.rules_asked.clear();
    EXPECT_EQ(setting.set("a$b`c"), 0);
    EXPECT_EQ(platform.rules_asked, setting.rule.empty() ? Strings{} : Strings{setting.rule + " a$b`c"});
    EXPECT_EQ(platform.done,
              (Strings{"nvram " + std::to_string(setting.section) + " " + setting.key + "=a$b`c",
                       "run logger -p 5 -t easycwmpd \"set " + setting.key + "=a\\$b\\`c\""}));
    EXPECT_EQ(get(setting.get), "a$b`c");
    platform.done.clear();
    EXPECT_EQ(setting.set("<b>"), -1);
    platform.rule = [](int, const std::string &, int) { return -1; };
    EXPECT_EQ(setting.set("x"), setting.rule.empty() ? 0 : -1);
    platform.rule = nullptr;
    EXPECT_EQ(platform.done.empty(), !setting.rule.empty());
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
                     {sasSetTr069antennaBeamwidth, "360", 0}, {sasSetTr069antennaBeamwidth, "361", -1}};
  for (const auto &[set, value, result] : cases)
    EXPECT_EQ(set(value), result) << value;
}

TEST_F(Sas, PlacesAreKeptInDegreesAndHeightsInTheDevicesUnit) {
  EXPECT_EQ(get(sasGetTr069CPIlatitude), "0");
  EXPECT_EQ(sasSetTr069CPIlatitude("37123456"), 0);
  EXPECT_EQ(platform.done.back(), "run logger -p 5 -t easycwmpd \"set SAS_CPI_LATITUDE=37.123456\"");
  EXPECT_EQ(platform.stored(0, "SAS_CPI_LATITUDE"), "37.123456");
  EXPECT_EQ(get(sasGetTr069CPIlatitude), "37123456");
  EXPECT_EQ(sasSetTr069CPIlongitude("-122654321"), 0);
  EXPECT_EQ(get(sasGetTr069CPIlongitude), "-122654321");

  EXPECT_EQ(sasSetTr069CPIheight("10.123456"), 0);
  EXPECT_EQ(get(sasGetTr069CPIheight), "10.1234"); // seven characters
  platform.nvram[{0, "SAS_CPI_HEIGHTUNIT"}] = "1";
  EXPECT_EQ(sasSetTr069CPIheight("10"), 0);
  EXPECT_EQ(platform.stored(0, "SAS_CPI_HEIGHT"), "32.81");
  EXPECT_EQ(get(sasGetTr069CPIheight), "10.00");
}

TEST_F(Sas, GrantsNeedTheDomainProxy) {
  for (kova_setter *set : {kovaSetTR069SasOperationStatus, kovaSetTR069ConfigRadioEnable,
                           kovaSetTR069ConfigpowerSpectralDensity, kovaSetTR069ConfigtransmitExpireTime}) {
    platform.nvram[{0, "SAS_USEDP"}] = "0";
    platform.done.clear();
    EXPECT_EQ(set("1"), -1);
    EXPECT_TRUE(platform.done.empty());
    platform.nvram[{0, "SAS_USEDP"}] = "1";
    EXPECT_EQ(set("1"), 0);
  }
  platform.nvram[{0, "SAS_USEDP"}] = "0";
  EXPECT_EQ(kovaSetTR069ConfigmaxEirp("1"), 0);
}

TEST_F(Sas, TheSerialNumberMustBeKnown) {
  int result = 0;
  EXPECT_EQ(get(sasGetTr069cbsdSerialNumber, result), "");
  EXPECT_EQ(result, -1);
  platform.nvram[{9, "CACHE_SN"}] = "SN1";
  EXPECT_EQ(get(sasGetTr069cbsdSerialNumber), "SN1");
}

} // namespace
