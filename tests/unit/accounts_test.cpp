// Accounts, SNMP, web access and the ping watchdog.
#include "rows.hpp"

#include <kova/accounts.h>

using fake::effect;
using fake::event;
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
    Strings expected;
    for (const std::string &line : said)
      expected.push_back("console " + line);
    if (said.back() == policy + "no space is allowed\n") expected.emplace_back("event 170 2 6");
    EXPECT_EQ(effect(mod_check_password, password, said.back().starts_with(policy) ? -1 : 0), expected);
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
  for (const char *refused : {"a<b", static_cast<const char *>(nullptr)})
    EXPECT_EQ(effect(kovaSetAdminPassword, refused, -1), Strings{});
  EXPECT_EQ(effect(kovaSetUserPassword, nullptr, -1), Strings{});
  EXPECT_EQ(effect(kovaSetUserPassword, "weak", -1).back(),
            "console [kovaSetUserPassword] failed to verify soundess of password\n");
  EXPECT_EQ(effect(kovaSetAdminPassword, "weak"), // no policy here
            (Strings{"nvram 0 WebsPassword=hash(weak,salt)", "nvram 0 PswdSalt=salt"}));
  const std::string longest = "Password!" + std::string(53, 'x') + "0";
  EXPECT_EQ(kovaSetUserPassword((longest + ":dropped").c_str()), 0);
  EXPECT_EQ(platform.stored(0, "WebsPassword2"), "hash(" + longest.substr(0, 50) + ",salt)");
  EXPECT_EQ(platform.stored(0, "PswdSalt2"), "salt");
  EXPECT_EQ(fake::get_all({kovaGetAdminPassword, kovaGetUserPassword}), (Strings{"", " "}));
}

TEST_F(Accounts, SnmpCredentialsNeedTheService) {
  EXPECT_EQ(effect(kovaSetSNMPUserName, "me", -1), Strings{});
  const Strings started = {event("ce_snmp_start"), event("fw_sip_rule")};
  EXPECT_EQ(effect(kovaSetSNMPEnable, "1"), (Strings{"nvram 0 snmp_enable=1", started[0], started[1]}));
  EXPECT_EQ(effect(kovaSetSNMPUserName, "me"), (Strings{"nvram 0 snmp_username=me", started[0], started[1]}));
  EXPECT_EQ(platform.rules_asked, (Strings{"24/0 1", "24/2 me"}));
  fake::refuse_all();
  for (kova_setter *set : {kovaSetSNMPEnable, kovaSetSNMPUserName, kovaSetSNMPPassword})
    EXPECT_EQ(effect(set, nullptr, -1), Strings{});
}

TEST_F(Accounts, TheWebLockTimeIsWholeSeconds) {
  EXPECT_EQ(get(kovaGetWebLockTimeSettings, 4), "####");
  for (const char *refused :
       {"299", "65536", "+300", "", "99999999999999999999", static_cast<const char *>(nullptr)})
    EXPECT_EQ(effect(kovaSetWebLockTimeSettings, refused, -1), Strings{});
  for (const char *accepted : {"300", "65535"}) {
    EXPECT_EQ(kovaSetWebLockTimeSettings(accepted), 0);
    EXPECT_EQ(get(kovaGetWebLockTimeSettings), accepted);
  }
}

TEST_F(Accounts, DiagnosticsObjects) {
  platform.rule = [](int, const std::string &host, int) { return host.empty() ? -1 : 1; };
  effect(kovasetDiagnosticsHost, "h");
  effect(kovasetDiagnosticsHost, nullptr, -1);
  EXPECT_EQ(platform.rules_asked, (Strings{"21/1 h", "21/1 "}));
  for (const char *known : {"lo", "", static_cast<const char *>(nullptr),
                            "InternetGatewayDevice.WANDevice.1.WANConnectionDevice.1.WANIPConnection.1",
                            "InternetGatewayDevice.LANDevice.1.LANHostConfigManagement.IPInterface.1"})
    effect(kovasetIPingInterface, known);
  effect(kovasetTraceRouteDiagnosticsInterface, "eth0", -1);
  platform.nvram[{0, "ROUTEHOPS_HOPHOST"}] = "first;second";
  char host[8] = "";
  EXPECT_EQ(kovaGetDiagnosticsRouteHopsHopHost(2, host, 4), 0);
  EXPECT_STREQ(host, "sec");
  for (int index : {0, 3})
    EXPECT_EQ(kovaGetDiagnosticsRouteHopsHopHost(index, host, sizeof host), -1);
}

TEST_F(Accounts, TheWatchdogTakesAnythingButMarkup) {
  setSecondaryInstance(); // has the same watchdog
  for (const auto &[value, stored] : {std::pair{"5", "1"}, {"false", "1"}, {"0", "0"}, {"", "0"}}) {
    EXPECT_EQ(setTR069PingWatchdogEnable(value), 0);
    EXPECT_EQ(get(getTR069PingWatchdogEnable), stored) << value;
  }
  EXPECT_EQ(effect(setTR069PingWatchdogEnable, "1(", -1), Strings{});
  for (const char *value : {static_cast<const char *>(nullptr), "no address"})
    EXPECT_EQ(effect(setTR069PingWatchdogIPAddress, value)[0],
              std::string("nvram 0 pingWdIpAddress=") + (value != nullptr ? value : ""));
  EXPECT_EQ(effect(setTR069PingWatchdogIPAddress, "%3cx", -1), Strings{});
  EXPECT_EQ(get(getTR069PingWatchdogIPAddress), "no address");
  EXPECT_TRUE(platform.rules_asked.empty());
}

} // namespace
