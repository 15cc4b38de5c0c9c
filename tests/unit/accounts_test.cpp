// Accounts, SNMP, web access and the ping watchdog.
#include "accounts/accounts.h"
#include "fake/fake.hpp"

using fake::get;
using fake::platform;
using fake::Strings;

namespace {

class Accounts : public fake::Test {};

TEST_F(Accounts, ThePasswordPolicyNamesItsFirstObjection) {
  const std::string digit = "[passwdCheckDigit] digit:0\n", upper = "[passwdCheckUppercase] uppercase:B\n",
                    lower = "[passwdCheckLowercase] lowercase:a\n", policy = "[mod_check_password] ";
  // What is said of a password; those that are refused would mostly fail the later rules too.
  const std::pair<const char *, Strings> cases[] = {
      {"aB 0!", {digit, upper, lower, "[passwdCheckPunctuationCharacter] punctuation_character:!\n"}},
      {"aB 0", {digit, upper, lower, "[passwdCheckInnerSpace] password has space\n"}}, // a symbol, too
      {" \x7f",
       {"[passwdCheckASCII] invalidASCII:\x7f\n",
        policy + "require chars of ascii table are inbetween 32 and 126"}},
      {" ", {policy + "require at least one digit number\n"}},
      {"0 ", {digit, policy + "require at least one upper case char\n"}},
      {"0B ", {digit, upper, policy + "require at least one lowerr case char\n"}},
      {" aB0",
       {digit, upper, lower, "[passwdCheckSpace] The first character is space\n",
        policy + "no space is allowed\n"}},
      {"aB0 ",
       {digit, upper, lower, "[passwdCheckSpace] The last character is space\n",
        policy + "no space is allowed\n"}},
      {"aB0", {digit, upper, lower, policy + "require at least one symbol"}},
      {"aB 0:",
       {digit, upper, lower, "[passwdCheckPunctuationCharacter] punctuation_character::\n",
        "[passwdCheckInvalidCharacter] invalid_character::\n", policy + "Found invalid character\n"}}};
  for (const auto &[password, said] : cases) {
    SCOPED_TRACE(password);
    platform.done.clear();
    const bool refused = said.back().starts_with(policy);
    EXPECT_EQ(mod_check_password(password), refused ? -1 : 0);
    Strings expected;
    for (const std::string &line : said)
      expected.push_back("console " + line);
    if (said.back() == policy + "no space is allowed\n") expected.emplace_back("event 170 2 6");
    EXPECT_EQ(platform.done, expected);
  }
  std::string invalid;
  for (char c = ' '; c <= '~'; ++c)
    if (mod_check_password((std::string("aB0!") + c + "x").c_str()) != 0) invalid += c;
  EXPECT_EQ(invalid, "\"%&'+,:;<>?\\");

  platform.done.clear();
  EXPECT_EQ(passwdCheckSpace("\t") + passwdCheckSpace("a\n"), 2);
  EXPECT_EQ(passwdCheckASCII(nullptr), -1);
  EXPECT_EQ(platform.done[0] + platform.done[2], "console [passwdCheckSpace] password has space\n"
                                                 "console [passwdCheckASCII] illegal parameter\n");
  EXPECT_EQ(passwdCheckInnerSpace(" ab ") + passwdCheckInnerSpace(" "), 0);
}

TEST_F(Accounts, PasswordsAreStoredAsSaltedHashes) {
  EXPECT_EQ(kovaSetAdminPassword(nullptr), -1);
  EXPECT_EQ(kovaSetAdminPassword("a<b"), -1);
  EXPECT_EQ(kovaSetUserPassword(nullptr), -1);
  EXPECT_EQ(kovaSetUserPassword("weak"), -1);
  EXPECT_EQ(platform.done.back(), "console [kovaSetUserPassword] failed to verify soundess of password\n");
  platform.done.clear();
  EXPECT_EQ(kovaSetAdminPassword("weak"), 0); // no policy here
  EXPECT_EQ(platform.done, (Strings{"nvram 0 WebsPassword=hash(weak,salt)", "nvram 0 PswdSalt=salt"}));
  const std::string longest = "Password!" + std::string(53, 'x') + "0";
  EXPECT_EQ(kovaSetUserPassword((longest + ":dropped").c_str()), 0);
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
    EXPECT_EQ(set(nullptr), -1);
    platform.rule = nullptr;
  }
  EXPECT_EQ(get(kovaGetSNMPEnable) + get(kovaGetSNMPUserName), "11");
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
  platform.rule = [](int, const std::string &host, int) { return host.empty() ? -1 : 1; };
  for (kova_setter *set : {kovasetDiagnosticsHost, kovasetTraceRouteDiagnosticsHost}) {
    platform.rules_asked.clear();
    EXPECT_EQ(set("h"), 0);
    EXPECT_EQ(set(nullptr), -1);
    EXPECT_EQ(platform.rules_asked, (Strings{"21/1 h", "21/1 "}));
  }
  for (kova_setter *set : {kovasetIPingInterface, kovasetTraceRouteDiagnosticsInterface}) {
    EXPECT_EQ(set("lo"), 0);
    EXPECT_EQ(set(""), 0);
    EXPECT_EQ(set(nullptr), 0);
    EXPECT_EQ(set("InternetGatewayDevice.WANDevice.1.WANConnectionDevice.1.WANIPConnection.1"), 0);
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
  EXPECT_EQ(setTR069PingWatchdogEnable("1("), -1);
  struct {
    kova_getter *get;
    kova_setter *set;
    const char *key;
  } const settings[] = {{getTR069PingWatchdogIPAddress, setTR069PingWatchdogIPAddress, "pingWdIpAddress"},
                        {getTR069PingWatchdogTimeout, setTR069PingWatchdogTimeout, "pingWdTimeOut"},
                        {getTR069PingWatchdogCount, setTR069PingWatchdogCount, "pingWdCount"},
                        {getTR069PingWatchdogFailureCountToReboot, setTR069PingWatchdogFailureCountToReboot,
                         "pingWdRebootCount"}};
  setSecondaryInstance(); // has the same watchdog
  for (const auto &[getter, set, key] : settings) {
    EXPECT_EQ(set(nullptr), 0);
    EXPECT_EQ(platform.stored(0, key), "");
    EXPECT_EQ(set("no address"), 0);
    EXPECT_EQ(set("%3cx"), -1);
    EXPECT_EQ(platform.stored(0, key), "no address");
    EXPECT_EQ(get(getter), "no address");
  }
  EXPECT_TRUE(platform.rules_asked.empty());
}

} // namespace
