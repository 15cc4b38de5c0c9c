// Texts: copying values out, splitting fields, judging characters.
#include "src/frame/text.hpp"

#include <kova/frame.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace kova {

int leading_number(const char *text) {
  const long number = std::strtol(text, nullptr, 10);
  return static_cast<int>(number < INT_MIN ? INT_MIN : number > INT_MAX ? INT_MAX : number);
}

NumberText::NumberText(bool negative, unsigned long long magnitude) {
  std::snprintf(chars, sizeof chars, "%s%llu", negative ? "-" : "", magnitude);
}

int answer(const char *text, char *buf, unsigned int buflen) {
  if (buf == nullptr) return -1;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wstringop-truncation"
  std::strncpy(buf, text, buflen);
#pragma GCC diagnostic pop
  return 0;
}

int answer_terminated(const char *text, char *buf, unsigned int buflen) {
  if (buf != nullptr && buflen > 0) buf[buflen - 1] = '\0';
  return answer(text, buf, buflen > 0 ? buflen - 1 : 0);
}

} // namespace kova

char *trim_string_newline(char *s) {
  if (s == nullptr) return s;
  std::size_t length = std::strlen(s);
  while (length > 0 && s[length - 1] == '\n')
    s[--length] = '\0';
  const std::size_t leading = std::strspn(s, "\n");
  std::memmove(s, s + leading, length - leading + 1);
  return s;
}

int checkXSSattack(const char *value) {
  // ";" and "&" themselves are allowed, and only these letter cases of the encodings are sought: values that
  // devices in the field already store rely on it.
  static constexpr char patterns[][7] = {"\"",  "'",   "(",   ")",   "<",   ">",      "|",     "\\",  "%22",
                                         "%26", "%27", "%28", "%29", "%3b", "%3B",    "%3c",   "%3C", "%3e",
                                         "%3E", "%7c", "%7C", "%5c", "%5C", "%C2%A9", "%C2%AE"};
  static_assert(std::size(patterns) == 25);
  if (value == nullptr) return 0;
  for (const char *pattern : patterns)
    if (std::strstr(value, pattern) != nullptr) return -1;
  return 0;
}

char *getparametersInfo(char *s, int index) {
  if (s == nullptr || index < 0) return nullptr;
  char *rest = nullptr;
  char *field = strtok_r(s, ",", &rest);
  while (field != nullptr && index-- > 0)
    field = strtok_r(nullptr, ",", &rest);
  return field;
}

char *getnetparametersInfo(char *s, int index) {
  if (kova::is_empty(s)) return nullptr;
  return getparametersInfo(s, index);
}

int get_hostname_from_http_url(const char *url, char *out, int outlen) {
  if (kova::is_empty(url) || out == nullptr || outlen < 1) return -1;
  const char *host = std::strstr(url, "//");
  if (host == nullptr) return -1;
  kova::Text text;
  std::strncpy(text.chars, host + 2, kova::Text::size - 1);
  text.chars[std::strcspn(text, "/")] = '\0';
  text.chars[std::strcspn(text, ":")] = '\0';
  return kova::answer(text, out, static_cast<unsigned int>(outlen));
}

int hostname_type(const char *host) {
  constexpr int name = 1, dotted_address = 2;
  if (kova::is_empty(host)) return -1;
  return host[std::strspn(host, "0123456789.")] == '\0' ? dotted_address : name;
}
