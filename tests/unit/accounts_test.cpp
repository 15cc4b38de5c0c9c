// Passwords, and the hops of a traced route.
#include "fake/fake.hpp"

#include <kova/accounts.h>

using fake::effect;
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

TEST_F(Accounts, HopsAreCountedFromOne) {
  platform.nvram[{0, "ROUTEHOPS_HOPHOST"}] = "first;second";
  char host[8] = "";
  EXPECT_EQ(kovaGetDiagnosticsRouteHopsHopHost(2, host, 4), 0);
  EXPECT_STREQ(host, "sec");
  for (int index : {0, 3})
    EXPECT_EQ(kovaGetDiagnosticsRouteHopsHopHost(index, host, sizeof host), -1);
}

} // namespace
