// The policy of the web accounts' passwords.
#include "platform/nvram.h"

#include <kova/accounts.h>

#include <cstring>

namespace kova::accounts {

namespace {

// Of the C locale, whatever locale the agent has set.
bool is_digit(char c) {
  return c >= '0' && c <= '9';
}
bool is_upper(char c) {
  return c >= 'A' && c <= 'Z';
}
bool is_lower(char c) {
  return c >= 'a' && c <= 'z';
}
bool is_space(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
bool is_printable(char c) {
  return c >= ' ' && c <= '~';
}
bool is_punctuation(char c) {
  return is_printable(c) && c != ' ' && !is_digit(c) && !is_upper(c) && !is_lower(c);
}
bool is_unprintable(char c) {
  return !is_printable(c);
}
bool is_forbidden(char c) {
  return std::strchr("\"%&'+,:;<>?\\", c) != nullptr;
}

// Looks for the first character of a kind. 1 there is one, told to the console; 0 there is none; -1 no text.
int find_first(const char *helper, const char *text, bool (*is_wanted)(char), const char *message) {
  if (text == nullptr) {
    tarn_log_console("[%s] illegal parameter\n", helper);
    return -1;
  }
  for (; *text != '\0'; ++text) {
    if (!is_wanted(*text)) continue;
    tarn_log_console(message, helper, *text); // NOLINT(clang-diagnostic-format-nonliteral)
    return 1;
  }
  return 0;
}

} // namespace

} // namespace kova::accounts

using namespace kova;
using namespace kova::accounts;

int passwdCheckASCII(const char *text) {
  const int found = find_first(__func__, text, is_unprintable, "[%s] invalidASCII:%c\n");
  return found < 0 ? found : 1 - found;
}
int passwdCheckDigit(const char *text) {
  return find_first(__func__, text, is_digit, "[%s] digit:%c\n");
}
int passwdCheckUppercase(const char *text) {
  return find_first(__func__, text, is_upper, "[%s] uppercase:%c\n");
}
int passwdCheckLowercase(const char *text) {
  return find_first(__func__, text, is_lower, "[%s] lowercase:%c\n");
}
int passwdCheckPunctuationCharacter(const char *text) {
  return find_first(__func__, text, is_punctuation, "[%s] punctuation_character:%c\n");
}
int passwdCheckInvalidCharacter(const char *text) {
  return find_first(__func__, text, is_forbidden, "[%s] invalid_character:%c\n");
}

int passwdCheckSpace(const char *text) {
  if (text == nullptr) {
    tarn_log_console("[%s] illegal parameter\n", __func__);
    return -1;
  }
  const std::size_t length = std::strlen(text);
  const char *message = nullptr;
  if (length == 1 && is_space(text[0]))
    message = "[%s] password has space\n";
  else if (length > 0 && is_space(text[0]))
    message = "[%s] The first character is space\n";
  else if (length > 0 && is_space(text[length - 1]))
    message = "[%s] The last character is space\n";
  if (message == nullptr) return 0;
  tarn_log_console(message, __func__); // NOLINT(clang-diagnostic-format-nonliteral)
  return 1;
}

int passwdCheckInnerSpace(const char *text) {
  if (text == nullptr) {
    tarn_log_console("[%s] illegal parameter\n", __func__);
    return -1;
  }
  const std::size_t length = std::strlen(text);
  for (std::size_t i = 1; i + 1 < length; ++i) {
    if (!is_space(text[i])) continue;
    tarn_log_console("[%s] password has space\n", __func__);
    return 1;
  }
  return 0;
}

int mod_check_password(const char *password) {
  const auto refuse = [](const char *message) {
    tarn_log_console(message, "mod_check_password"); // NOLINT(clang-diagnostic-format-nonliteral)
    return -1;
  };
  if (passwdCheckASCII(password) != 1)
    return refuse("[%s] require chars of ascii table are inbetween 32 and 126");
  if (passwdCheckDigit(password) != 1) return refuse("[%s] require at least one digit number\n");
  if (passwdCheckUppercase(password) != 1) return refuse("[%s] require at least one upper case char\n");
  if (passwdCheckLowercase(password) != 1) return refuse("[%s] require at least one lowerr case char\n");
  if (passwdCheckSpace(password) != 0) {
    refuse("[%s] no space is allowed\n");
    tarn_log_type0(170, 2, 6); // the device's event of a refused password
    return -1;
  }
  // An inner blank counts as the symbol.
  if (passwdCheckPunctuationCharacter(password) != 1 && passwdCheckInnerSpace(password) != 1)
    return refuse("[%s] require at least one symbol");
  if (passwdCheckInvalidCharacter(password) != 0) return refuse("[%s] Found invalid character\n");
  return 0;
}
