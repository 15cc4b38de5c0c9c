// Accounts, SNMP, web access and the ping watchdog.
#include "accounts/accounts.h"
#include "fake/fake.hpp"

using fake::get;
using fake::platform;
using fake::Strings;

namespace {

class Accounts : public fake::Test {};

TEST_F(Accounts, ThePasswordPolicyNamesItsFirstObjection) {
  const std::pair<const char *, const char *> cases[] = {
      {"Passw0rd!", ""},
      {"Passw 0rd", ""}, // an inner blank is a symbol
      {"P\x7f", "require chars of ascii table are inbetween 32 and 126"},
      {"P\xc3\xa4", "require chars of ascii table are inbetween 32 and 126"},
      {"Password!", "require at least one digit number\n"},
      {"passw0rd!", "require at least one upper case char\n"},
      {"PASSW0RD!", "require at least one lowerr case char\n"},
      {"Passw0rd! ", "no space is allowed\n"},
      {" Passw0rd!", "no space is allowed\n"},
      {"Passw0rd", "require at least one symbol"},
      {"Passw0rd:", "Found invalid character\n"},
      {"Passw0rd%!", "Found invalid character\n"}};
  for (const auto &[password, objection] : cases) {
    SCOPED_TRACE(password);
    platform.done.clear();
    EXPECT_EQ(mod_check_password(password), *objection == '\0' ? 0 : -1);
    const std::string line = "console [mod_check_password] " + std::string(objection);
    bool said = false;
    for (const std::string &entry : platform.done)
      said = said || entry == line;
    EXPECT_EQ(said, *objection != '\0');
  }
  platform.done.clear();
  EXPECT_EQ(passwdCheckDigit("a5b6"), 1);
  EXPECT_EQ(passwdCheckSpace(" "), 1);
  EXPECT_EQ(passwdCheckInnerSpace("a b"), 1);
  EXPECT_EQ(passwdCheckUppercase(nullptr), -1);
  EXPECT_EQ(platform.done, (Strings{"console [passwdCheckDigit] digit:5\n",
                                    "console [passwdCheckSpace] password has space\n",
                                    "console [passwdCheckInnerSpace] password has space\n",
                                    "console [passwdCheckUppercase] illegal parameter\n"}));
  EXPECT_EQ(passwdCheckInnerSpace("a "), 0);
  EXPECT_EQ(passwdCheckASCII("ok"), 1);
  EXPECT_EQ(passwdCheckASCII("\n"), 0);
}

TEST_F(Accounts, PasswordsAreStoredAsSaltedHashes) {
  EXPECT_EQ(kovaSetAdminPassword(nullptr), -1);
  EXPECT_EQ(kovaSetAdminPassword("a<b"), -1);
  EXPECT_EQ(kovaSetUserPassword("weak"), -1);
  EXPECT_EQ(platform.done.back(), "console [kovaSetUserPassword] failed to verify soundess of password\n");
  platform.done.clear();
  EXPECT_EQ(kovaSetAdminPassword("weak"), 0); // no policy here
  EXPECT_EQ(platform.done, (Strings{"nvram 0 WebsPassword=hash(weak,salt)", "nvram 0 PswdSalt=salt"}));
  const std::string longest = "Passw0rd!" + std::string(54, 'x');
  EXPECT_EQ(kovaSetUserPassword((longest + "dropped").c_str()), 0);
  EXPECT_EQ(platform.stored(0, "WebsPassword2"), "hash(" + longest.substr(0, 50) + ",salt)");
  EXPECT_EQ(platform.stored(0, "PswdSalt2"), "salt");
  EXPECT_EQ(get(kovaGetAdminPassword), "");
  EXPECT_EQ(get(kovaGetUserPassword), " ");
}

TEST_F(Accounts, SnmpCredentialsNeedTheService) {
  const Strings started = {"run test_cpeevent call \"ce_snmp_start\"",
                           "run test_cpeevent call \"fw_sip_rule\""};
  EXPECT_EQ(kovaSetSNMPUserName("me"), -1);
  EXPECT_TRUE(platform.done.empty());
  struct {
    kova_setter *set;
    std::string key, rule;
  } const settings[] = {{kovaSetSNMPEnable, "snmp_enable", "24/0"},
                        {kovaSetSNMPUserName, "snmp_username", "24/2"},
                        {kovaSetSNMPPassword, "snmp_password", "24/4"}};
  for (const auto &[set, key, rule] : settings) {
    platform.done.clear();
    platform.rules_asked.clear();
    EXPECT_EQ(set("1"), 0);
    EXPECT_EQ(platform.rules_asked, Strings{rule + " 1"});
    EXPECT_EQ(platform.done, (Strings{"nvram 0 " + key + "=1", started[0], started[1]}));
    platform.rule = [](int, const std::string &, int) { return -3; };
    EXPECT_EQ(set("1"), -1);
    platform.rule = nullptr;
  }
  EXPECT_EQ(get(kovaGetSNMPUserName), "1");
  EXPECT_EQ(get(kovaGetSNMPPassword), " ");
}

TEST_F(Accounts, TheWebLockTimeIsWholeSeconds) {
  EXPECT_EQ(get(kovaGetWebLockTimeSettings, 4), "####");
  for (const char *refused : {"299", "65536", "+300", " 300", "", "99999999999999999999"})
    EXPECT_EQ(kovaSetWebLockTimeSettings(refused), -1) << refused;
  EXPECT_EQ(kovaSetWebLockTimeSettings(nullptr), -1);
  EXPECT_EQ(kovaSetWebLockTimeSettings("300"), 0);
  EXPECT_EQ(kovaSetWebLockTimeSettings("65535"), 0);
  EXPECT_EQ(get(kovaGetWebLockTimeSettings), "65535");
}

TEST_F(Accounts, DiagnosticsObjects) {
  EXPECT_EQ(kovasetDiagnosticsHost("h"), 0);
  EXPECT_EQ(platform.rules_asked, Strings{"21/1 h"});
  for (kova_setter *set : {kovasetIPingInterface, kovasetTraceRouteDiagnosticsInterface}) {
    EXPECT_EQ(set("lo"), 0);
    EXPECT_EQ(set(""), 0);
    EXPECT_EQ(set("InternetGatewayDevice.LANDevice.1.LANHostConfigManagement.IPInterface.1"), 0);
    EXPECT_EQ(set("eth0"), -1);
  }
  platform.nvram[{0, "ROUTEHOPS_HOPHOST"}] = "first;second";
  char host[8] = "";
  EXPECT_EQ(kovaGetDiagnosticsRouteHopsHopHost(2, host, 4), 0);
  EXPECT_STREQ(host, "sec");
  for (int index : {-1, 0, 3})
    EXPECT_EQ(kovaGetDiagnosticsRouteHopsHopHost(index, host, sizeof host), -1);
}

TEST_F(Accounts, TheWatchdogTakesAnythingButMarkup) {
  const std::pair<const char *, const char *> switches[] = {
      {"5", "1"}, {"false", "1"}, {"0", "0"}, {"", "0"}};
  for (const auto &[value, stored] : switches) {
    EXPECT_EQ(setTR069PingWatchdogEnable(value), 0);
    EXPECT_EQ(get(getTR069PingWatchdogEnable), stored) << value;
  }
  EXPECT_EQ(setTR069PingWatchdogIPAddress("no address"), 0);
  EXPECT_EQ(setTR069PingWatchdogIPAddress("(x)"), -1);
  EXPECT_EQ(platform.stored(0, "pingWdIpAddress"), "no address");
  EXPECT_EQ(setTR069PingWatchdogTimeout("1") + setTR069PingWatchdogCount("2") +
                setTR069PingWatchdogFailureCountToReboot("3"),
            0);
  EXPECT_EQ(platform.stored(0, "pingWdTimeOut") + platform.stored(0, "pingWdCount") +
                platform.stored(0, "pingWdRebootCount"),
            "123");
}

} // namespace
