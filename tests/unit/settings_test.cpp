// Settings that are judged by a rule, stored, and taken up by their service: one statement for all of them.
#include "rows.hpp"

#include <kova/lan.h>
#include <kova/radio.h>
#include <kova/sas.h>
#include <kova/time.h>
#include <kova/voice.h>
#include <kova/wan.h>

using fake::event;
using fake::get;
using fake::platform;
using fake::Strings;

namespace {

enum Form { any, not_empty, unmarked }; // what else is asked of a value

struct Setting {
  kova_getter *get;
  kova_setter *set;
  std::string rule; // group and item; "": none is asked
  Strings keys;     // all that take the value; the first is shown
  Form form = any;
  Strings reaction{};
  std::string open{}; // what is stored where it can be set
  Strings closed{};   // and where it cannot
  int section = 0;
};

Strings logged(const std::string &key) {
  return {"run logger -p 5 -t easycwmpd \"set " + key + "=0\""};
}
const Strings wifi = {"request 0x10000005"}, nat = {event("fw_nat_cfg changed")},
              nat_restart = {event("fw_nat_cfg changed"), event("ce_ipv4_nat stop"), "sleep 3",
                             event("ce_ipv4_nat start")},
              web_filter = {event("fw_sec_ddos_filter")},
              web_service = {event("ce_webservice_reinit"), "sleep 3", event("fw_sec_ddos_filter"),
                             event("fw_remote_web_access_filter")};
const Strings sip_off = {"SIPEnable=0"}, proxy_off = {"", "SIPServerMode=1", "SIPEnable=0 SIPServerMode=0"},
              pcscf_off = {"", "SIPServerMode=0", "SIPEnable=0 SIPServerMode=1"};

// clang-format off
#define FILTER(family, name)                                                                                   \
    kovaGet##family##FilteringBasicSetting##name##Value, kovaset##family##FilteringBasicSetting##name##Value
#define WIFI(name) getTR069Wifi##name, setTR069Wifi##name
#define NETWORK(n)                                                                                             \
    {WIFI(APIsolate##n), "1/25", {#n "_apisolate"}, any, wifi}, {WIFI(PassPhrase##n), "1/7", {#n "_wpapass"}, any, wifi}
#define FURTHER(n) NETWORK(n), {WIFI(MutiSSID##n), "1/4", {#n "_ssid"}, any, wifi},                            \
    {WIFI(MutiStatus##n), "1/1", {#n "_ENABLE"}, any, wifi}, {WIFI(MutiHideSSID##n), "1/24", {#n "_hidden"}, any, wifi}
#define SAS(name, key, rule) {sasGetTr069##name, sasSetTr069##name, rule, {key}, unmarked, logged(key)}
#define GRANT(name, key, rule) {kovaGetTR069##name, kovaSetTR069##name, rule, {key}, unmarked, logged(key)}
#define WITH_PROXY(name, key, rule, section)                                                                   \
    {kovaGetTR069##name, kovaSetTR069##name, rule, {key}, unmarked, logged(key), "", {"SAS_USEDP=0"}, section}
#define PAIR(name) kovaGet##name, kovaSet##name
#define SMALL(name) kovaGet##name, kovaset##name
const Setting settings[] = {
    {FILTER(Mac, Enable), "13/1", {"MACFilterEnable", "WlanMACFilterEnable"}},
    {FILTER(Mac, Mode), "13/2", {"MACFilterMode", "WlanMACFilterMode"}, any, {}, "MACFilterEnable=1", {""}},
    {FILTER(Mac, LogEnable), "13/3", {"MACFilterDropLogEnable"}, any, {}, "MACFilterEnable=1", {""}},
    {FILTER(Url, Enable), "15/1", {"URLFilterEnable"}},
    {FILTER(Url, Mode), "15/2", {"URLFilterMode"}, any, {}, "URLFilterEnable=1", {""}},
    {FILTER(Url, LogEnable), "15/3", {"URLFilterDropLogEnable"}, any, {}, "URLFilterEnable=1", {""}},
    {FILTER(Ip, Enable), "17/1", {"IPPortFilterEnable"}},
    {FILTER(Ip, Mode), "17/2", {"DefaultIPPortFilterPolicy"}, any, {}, "IPPortFilterEnable=1", {""}},
    {FILTER(Ip, LogEnable), "17/3", {"IPPortFilterDropLogEnable"}, any, {}, "IPPortFilterEnable=1", {""}},
    {FILTER(Ipv6, Enable), "18/1", {"IPPort6FilterEnable"}},
    {FILTER(Ipv6, Mode), "18/2", {"DefaultIPPort6FilterPolicy"}, any, {}, "IPPort6FilterEnable=1", {""}},
    {FILTER(Ipv6, LogEnable), "18/3", {"IPPort6FilterDropLogEnable"}, any, {}, "IPPort6FilterEnable=1", {""}},
    {SMALL(WebLoginEnable), "", {"TR_WEB_LOGIN_ENABLE"}, not_empty, web_filter},

    {PAIR(TR069HttpsEnable), "41/2", {"https_enable"}, not_empty, web_service},
    {PAIR(TR069HttpsPort), "41/1", {"https_port"}, unmarked, web_service},
    {PAIR(TR069HttpsWanEnable), "", {"TR_WEB_LOGIN_ENABLE"}, not_empty, web_filter},
    {PAIR(WANConnectionX_MTU), "30/1", {"internet_mtu"}, any, {"run test_cpeevent call 'ce_set_mtu'"}},
    {getTR069DMZEnable, setTR069DMZEnable, "11/1", {"DMZEnable"}, unmarked, nat_restart, "oper_mode=2"},
    {getTR069DMZHostAddress, setTR069DMZHostAddress, "11/2", {"DMZAddress"}, unmarked, nat, "oper_mode=1"},
    {PAIR(ALGSIPEnable), "31/1", {"SIPAlgEnable"}, not_empty, nat, "oper_mode=2"},
    {SMALL(DeviceTimeNTPServer), "4/10", {"NTPServerIP"}},
    {SMALL(DaylightSavingsUsed), "4/8", {"NTPDaylightSaving"}, any, {}, "TZ=GMT_000", {"TZ=JST_009"}},

    {WIFI(Mode), "", {"0_rfmode"}, not_empty, wifi}, {WIFI(Rate), "", {"Fixrate"}, not_empty, wifi},
    {WIFI(Bandwidth), "", {"Bandwidth"}, not_empty, wifi}, {WIFI(Channel), "1/3", {"Channel"}, not_empty, wifi},
    {WIFI(Enable), "1/1", {"Wifi_enable"}, any, wifi}, {WIFI(SSID0), "1/4", {"0_ssid"}, any, wifi},
    {WIFI(HideSSID0), "1/24", {"0_hidden"}, any, wifi}, NETWORK(0), FURTHER(1), FURTHER(2), FURTHER(3),

    SAS(enableMode, "SAS_ENABLEMODE", "7/49"), SAS(useDP, "SAS_USEDP", ""), SAS(serverURL, "SAS_ADDRESS", ""),
    SAS(sas_step_choice, "SAS_STEP_CHOICE", "7/54"), SAS(UserId, "SAS_USERID", "7/49"), SAS(fccId, "SAS_FCCID", "7/49"),
    SAS(callSign, "SAS_CALLSIGN", "7/49"), SAS(cbsdCategory, "SAS_CBSD_CATEGORY", "7/49"),
    SAS(radioTechnology, "SAS_RADIO_TECHNOLOGY", "7/49"), SAS(antennaGain, "SAS_ANTENNAGAIN", "7/49"),
    SAS(antennaAzimuth, "SAS_ANTENNAAZIMUTH", ""), SAS(antennaDowntilt, "SAS_ANTENNADOWNTILT", ""),
    SAS(antennaBeamwidth, "SAS_ANTENNABEAMWIDTH", ""), SAS(antennaModel, "SAS_ANTENNAMODEL", "7/49"),
    SAS(CPIheightType, "SAS_CPI_HEIGHTTYPE", "7/49"), SAS(CPIindoorDeployment, "SAS_CPI_INDOORDEPLYMENT", "7/49"),
    SAS(CPIgroupType, "SAS_CPI_GROUPTYPE", "7/49"), SAS(CPIgroupId, "SAS_CPI_GROUPID", "7/49"),
    SAS(CPIcpiId, "SAS_CPI_CPIID", "7/49"), SAS(CPIcpiName, "SAS_CPI_CPINAME", "7/49"),
    SAS(CPIinstallCertificationTime, "SAS_CPI_INSTALLTIME", "7/49"),
    SAS(cellInfobandwidth, "SAS_CELL_BANDWIDTH", "7/49"), SAS(cellInfolowFrequency, "SAS_CELL_LOW", "7/49"),
    SAS(cellInfohighFrequency, "SAS_CELL_HIGH", "7/49"), GRANT(ConfigmaxEirp, "SAS_CONFIG_MAXEIRP", "7/50"),
    GRANT(ConfiglowFrequency, "SAS_CONFIG_LOW", "7/51"), GRANT(ConfighighFrequency, "SAS_CONFIG_HIGH", "7/52"),
    WITH_PROXY(SasOperationStatus, "SAS_OPERATION_STATUS", "", 9),
    WITH_PROXY(ConfigRadioEnable, "SAS_CONFIG_RADIOENABLE", "7/49", 0),
    WITH_PROXY(ConfigpowerSpectralDensity, "SAS_CONFIG_POWER", "7/53", 0),
    WITH_PROXY(ConfigtransmitExpireTime, "SAS_CONFIG_TRANSEXPIRETIME", "7/55", 0),

    {PAIR(VoipBasicEnable), "26/0", {"SIPEnable"}},
    {PAIR(SIPServerMode), "26/4", {"SIPServerMode"}, any, {}, "", sip_off},
    {PAIR(SIPProxyServer), "26/9", {"SIPProxyServer"}, any, {}, "SIPServerMode=0", proxy_off},
    {PAIR(SIPProxyServerPort), "26/10", {"SIPProxyPort"}, any, {}, "SIPServerMode=0", proxy_off},
    {PAIR(SIPRegistrarServer), "26/7", {"SIPRegisterServer"}, any, {}, "SIPServerMode=0", proxy_off},
    {PAIR(SIPRegistrarServerPort), "26/8", {"SIPRegisterPort"}, any, {}, "SIPServerMode=0", proxy_off},
    {PAIR(SIPUserAgentDomain), "26/11", {"SIPServerDomain"}, any, {}, "SIPServerMode=0", proxy_off},
    {PAIR(PCSCFServerDomain), "26/5", {"pcscfServerDomain"}, any, {}, "SIPServerMode=1", pcscf_off},
    {PAIR(PCSCFServerPort), "26/6", {"pcscfServerPort"}, any, {}, "SIPServerMode=1 SIPEnable=1", pcscf_off},
    {PAIR(DirectoryNumber), "26/1", {"SIPId"}, any, {}, "", sip_off},
    {PAIR(AuthUserName), "26/2", {"SIPUserName"}, any, {}, "", sip_off},
    {PAIR(AuthPassword), "26/3", {"SIPPassword"}, any, {}, "", sip_off}, {SMALL(DTMFMethod), "27/0", {"DTMFMethod"}},
    {SMALL(FaxOption), "27/1", {"FAXOption"}}, {SMALL(SilenceSuppression), "27/4", {"SIPVad"}},
    {SMALL(RTPLocalPortMin), "27/2", {"RTPStartPort"}}, {SMALL(RTPLocalPortMax), "27/3", {"RTPEndPort"}},
    {SMALL(Regions), "27/5", {"COUNTRYCode"}}, {SMALL(CallerID), "27/6", {"CALLERType"}},
    {SMALL(DialingInterval), "27/7", {"DIALInterval"}}, {SMALL(OffhookInterval), "27/8", {"OFFInterval"}}};
// clang-format on

class Settings : public fake::Test {};

TEST_F(Settings, AreJudgedStoredAndTakenUp) {
  for (const Setting &setting : settings) {
    SCOPED_TRACE(setting.keys[0]);
    int answer = -1;
    const auto start = [&](const std::string &stored) {
      platform = {};
      platform.rule = [&](int, const std::string &, int) { return answer; };
      platform.preset(0, stored);
    };
    start(setting.open);
    if (!setting.rule.empty()) {
      EXPECT_EQ(setting.set("0"), -1);
    }
    answer = 3; // an answer below 0 refuses, no other
    EXPECT_EQ(setting.set(setting.form == unmarked ? "<" : nullptr), setting.form == any ? 0 : -1);
    Strings done;
    for (const std::string value : {"", "0"}) {
      if (value.empty() && setting.form != any) continue;
      for (const std::string &key : setting.keys)
        done.push_back(std::string("nvram ") + std::to_string(setting.section) + " " + key + "=" + value);
      done.insert(done.end(), setting.reaction.begin(), setting.reaction.end());
    }
    platform.rules_asked.clear();
    EXPECT_EQ(setting.set("0"), 0);
    EXPECT_EQ(platform.rules_asked, setting.rule.empty() ? Strings{} : Strings{setting.rule + " 0"});
    EXPECT_EQ(platform.done, done);
    EXPECT_EQ(get(setting.get), setting.keys[0] == "SIPPassword" ? " " : "0");
    for (const std::string &stored : setting.closed) {
      start(stored);
      EXPECT_EQ(setting.set("0"), -1) << stored;
      EXPECT_TRUE(platform.done.empty());
    }
  }
}

} // namespace
