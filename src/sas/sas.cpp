// Spectrum access: what the registration needs, and what is granted.
#include "src/frame/rows.hpp"

#include <kova/sas.h>

#include <cstdio>
#include <cstdlib>

namespace kova::sas {

namespace {

// ---- What a setter asks of a value, after its rule and the markup check

bool whatever(const char *) {
  return true;
}

template <int least, int most>
bool degrees(const char *value) {
  const int number = leading_number(value); // a text that is no number is 0
  return number >= least && number <= most;
}

// Grants come through the domain proxy: without it they would have no source.
bool with_domain_proxy(const char *) {
  return !equal(load("SAS_USEDP"), "0");
}

// ---- Stored forms

using Form = Text(const char *);

Text as_it_is(const char *text) {
  Text copy;
  std::snprintf(copy.chars, Text::size, "%.255s", text);
  return copy;
}

constexpr double millionths = 1e6;
Text degrees_from_millionths(const char *text) {
  Text stored;
  std::snprintf(stored.chars, Text::size, "%.6lf", std::strtod(text, nullptr) / millionths);
  return stored;
}
Text millionths_from_degrees(const char *text) {
  Text shown;
  std::snprintf(shown.chars, Text::size, "%.0lf", std::strtod(text, nullptr) * millionths);
  return shown;
}

constexpr double metres_in_a_foot = 0.3048;
bool keeps_feet() {
  return equal(load("SAS_CPI_HEIGHTUNIT"), "1");
}
Text stored_height(const char *metres) {
  constexpr int most_characters = 7;
  Text height = as_it_is(metres);
  if (keeps_feet())
    std::snprintf(height.chars, Text::size, "%.2f", std::strtod(metres, nullptr) / metres_in_a_foot);
  height.chars[most_characters] = '\0';
  return height;
}
Text shown_height(const char *stored) {
  Text height = as_it_is(stored);
  if (keeps_feet())
    std::snprintf(height.chars, Text::size, "%.2f", std::strtod(stored, nullptr) * metres_in_a_foot);
  return height;
}

// ---- The family's setter

constexpr int rules = 7;                 // the platform's rule group
constexpr int no_rule = 0, generic = 49; // items

int set(Key key, const char *value, int item, bool (*allowed)(const char *), Form *to_stored = nullptr) {
  value = text_or_empty(value);
  if (item != no_rule && !passes(kova::rule_of(rules, item), value)) return -1;
  if (checkXSSattack(value) < 0 || !allowed(value)) return -1;
  const Text converted = to_stored != nullptr ? to_stored(value) : Text{};
  const char *stored = to_stored != nullptr ? converted.chars : value;
  store(key, stored);
  sasSyslogMessage("set %s=%s", key.text, stored);
  return 0;
}

int get_as(Form *shown, const char *key, char *buf, unsigned int buflen) {
  return answer(shown(load(key)), buf, buflen);
}

} // namespace

} // namespace kova::sas

using namespace kova;
using namespace kova::sas;

int sasGetTr069cbsdSerialNumber(char *buf, unsigned int buflen) {
  const Text serial = load(runtime("CACHE_SN"));
  return answer(serial, buf, buflen) == 0 && !serial.empty() ? 0 : -1;
}

#define CONVERTED(getter, setter, key, item, shown, stored)                                                  \
  int getter(char *buf, unsigned int buflen) {                                                               \
    return get_as(shown, key, buf, buflen);                                                                  \
  }                                                                                                          \
  int setter(const char *value) {                                                                            \
    return set(key, value, item, whatever, stored);                                                          \
  }
#undef SETTING
#define SETTING(getter, setter, key, item, allowed)                                                          \
  STORED(getter, key) KOVA_SET(setter, set(key, value, item, allowed))

// clang-format off
//      getter                                  setter                                  key                        rule item  and
SETTING(sasGetTr069enableMode,                  sasSetTr069enableMode,                  "SAS_ENABLEMODE",          generic,   whatever)
SETTING(sasGetTr069useDP,                       sasSetTr069useDP,                       "SAS_USEDP",               no_rule,   whatever)
SETTING(sasGetTr069serverURL,                   sasSetTr069serverURL,                   "SAS_ADDRESS",             no_rule,   whatever)
SETTING(sasGetTr069sas_step_choice,             sasSetTr069sas_step_choice,             "SAS_STEP_CHOICE",         54,        whatever)
SETTING(sasGetTr069UserId,                      sasSetTr069UserId,                      "SAS_USERID",              generic,   whatever)
SETTING(sasGetTr069fccId,                       sasSetTr069fccId,                       "SAS_FCCID",               generic,   whatever)
SETTING(sasGetTr069callSign,                    sasSetTr069callSign,                    "SAS_CALLSIGN",            generic,   whatever)
SETTING(sasGetTr069cbsdCategory,                sasSetTr069cbsdCategory,                "SAS_CBSD_CATEGORY",       generic,   whatever)
SETTING(sasGetTr069radioTechnology,             sasSetTr069radioTechnology,             "SAS_RADIO_TECHNOLOGY",    generic,   whatever)
SETTING(sasGetTr069antennaGain,                 sasSetTr069antennaGain,                 "SAS_ANTENNAGAIN",         generic,   whatever)
SETTING(sasGetTr069antennaAzimuth,              sasSetTr069antennaAzimuth,              "SAS_ANTENNAAZIMUTH",      no_rule,   (degrees<0, 359>))
SETTING(sasGetTr069antennaDowntilt,             sasSetTr069antennaDowntilt,             "SAS_ANTENNADOWNTILT",     no_rule,   (degrees<-90, 90>))
SETTING(sasGetTr069antennaBeamwidth,            sasSetTr069antennaBeamwidth,            "SAS_ANTENNABEAMWIDTH",    no_rule,   (degrees<0, 360>))
SETTING(sasGetTr069antennaModel,                sasSetTr069antennaModel,                "SAS_ANTENNAMODEL",        generic,   whatever)
CONVERTED(sasGetTr069CPIlatitude,               sasSetTr069CPIlatitude,                 "SAS_CPI_LATITUDE",        generic,   millionths_from_degrees, degrees_from_millionths)
CONVERTED(sasGetTr069CPIlongitude,              sasSetTr069CPIlongitude,                "SAS_CPI_LONGITUDE",       generic,   millionths_from_degrees, degrees_from_millionths)
CONVERTED(sasGetTr069CPIheight,                 sasSetTr069CPIheight,                   "SAS_CPI_HEIGHT",          generic,   shown_height,            stored_height)
SETTING(sasGetTr069CPIheightType,               sasSetTr069CPIheightType,               "SAS_CPI_HEIGHTTYPE",      generic,   whatever)
SETTING(sasGetTr069CPIindoorDeployment,         sasSetTr069CPIindoorDeployment,         "SAS_CPI_INDOORDEPLYMENT", generic,  whatever)
SETTING(sasGetTr069CPIgroupType,                sasSetTr069CPIgroupType,                "SAS_CPI_GROUPTYPE",       generic,   whatever)
SETTING(sasGetTr069CPIgroupId,                  sasSetTr069CPIgroupId,                  "SAS_CPI_GROUPID",         generic,   whatever)
SETTING(sasGetTr069CPIcpiId,                    sasSetTr069CPIcpiId,                    "SAS_CPI_CPIID",           generic,   whatever)
SETTING(sasGetTr069CPIcpiName,                  sasSetTr069CPIcpiName,                  "SAS_CPI_CPINAME",         generic,   whatever)
SETTING(sasGetTr069CPIinstallCertificationTime, sasSetTr069CPIinstallCertificationTime, "SAS_CPI_INSTALLTIME",     generic,   whatever)
SETTING(sasGetTr069cellInfobandwidth,           sasSetTr069cellInfobandwidth,           "SAS_CELL_BANDWIDTH",      generic,   whatever)
SETTING(sasGetTr069cellInfolowFrequency,        sasSetTr069cellInfolowFrequency,        "SAS_CELL_LOW",            generic,   whatever)
SETTING(sasGetTr069cellInfohighFrequency,       sasSetTr069cellInfohighFrequency,       "SAS_CELL_HIGH",           generic,   whatever)
SETTING(kovaGetTR069ConfigRadioEnable,          kovaSetTR069ConfigRadioEnable,          "SAS_CONFIG_RADIOENABLE",  generic,   with_domain_proxy)
SETTING(kovaGetTR069ConfigmaxEirp,              kovaSetTR069ConfigmaxEirp,              "SAS_CONFIG_MAXEIRP",      50,        whatever)
SETTING(kovaGetTR069ConfiglowFrequency,         kovaSetTR069ConfiglowFrequency,         "SAS_CONFIG_LOW",          51,        whatever)
SETTING(kovaGetTR069ConfighighFrequency,        kovaSetTR069ConfighighFrequency,        "SAS_CONFIG_HIGH",         52,        whatever)
SETTING(kovaGetTR069ConfigpowerSpectralDensity, kovaSetTR069ConfigpowerSpectralDensity, "SAS_CONFIG_POWER",        53,        with_domain_proxy)
SETTING(kovaGetTR069ConfigtransmitExpireTime,   kovaSetTR069ConfigtransmitExpireTime,   "SAS_CONFIG_TRANSEXPIRETIME", 55,     with_domain_proxy)
SETTING(kovaGetTR069SasOperationStatus, kovaSetTR069SasOperationStatus, runtime("SAS_OPERATION_STATUS"), no_rule, with_domain_proxy)
