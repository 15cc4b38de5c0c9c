// Settings that are judged by a rule, stored, and taken up by their service: one statement for all of them.
#include "rows.hpp"

#include <kova/lan.h>
#include <kova/management.h>
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
#define PAIR(name) kovaGet##name, kovaSet##name
#define SMALL(name) kovaGet##name, kovaset##name
const Setting settings[] = {
    {FILTER(Mac, Enable), "13/1", {"MACFilterEnable", "WlanMACFilterEnable"}},
    {FILTER(Mac, Mode), "13/2", {"MACFilterMode", "WlanMACFilterMode"}, any, {}, "MACFilterEnable=1", {""}},
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

    {getTR069WifiMode, setTR069WifiMode, "", {"0_rfmode"}, not_empty, wifi},
    {getTR069WifiChannel, setTR069WifiChannel, "1/3", {"Channel"}, not_empty, wifi},
    {getTR069WifiMutiSSID1, setTR069WifiMutiSSID1, "1/4", {"1_ssid"}, any, wifi},

    {sasGetTr069enableMode, sasSetTr069enableMode, "7/49", {"SAS_ENABLEMODE"}, unmarked, logged("SAS_ENABLEMODE")},
    {sasGetTr069useDP, sasSetTr069useDP, "", {"SAS_USEDP"}, unmarked, logged("SAS_USEDP")},
    {PAIR(TR069SasOperationStatus), "", {"SAS_OPERATION_STATUS"}, unmarked, logged("SAS_OPERATION_STATUS"), "",
     {"SAS_USEDP=0"}, 9},
    {PAIR(TR069ConfigpowerSpectralDensity), "7/53", {"SAS_CONFIG_POWER"}, unmarked, logged("SAS_CONFIG_POWER"), "",
     {"SAS_USEDP=0"}},

    {PAIR(VoipBasicEnable), "26/0", {"SIPEnable"}},
    {PAIR(SIPServerMode), "26/4", {"SIPServerMode"}, any, {}, "", sip_off},
    {PAIR(SIPProxyServer), "26/9", {"SIPProxyServer"}, any, {}, "SIPServerMode=0", proxy_off},
    {PAIR(PCSCFServerPort), "26/6", {"pcscfServerPort"}, any, {}, "SIPServerMode=1 SIPEnable=1", pcscf_off},
    {PAIR(AuthPassword), "26/3", {"SIPPassword"}, any, {}, "", sip_off}, {SMALL(DTMFMethod), "27/0", {"DTMFMethod"}}};
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
