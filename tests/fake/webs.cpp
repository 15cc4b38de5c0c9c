// The rules that the platform shares with the device's web pages: plain ones. Those that look at an address or a URL
// are recorded, so that their order shows.
#include "platform/webs.h"

#include "fake.hpp"

#include <arpa/inet.h>

#include <cstdlib>
#include <cstring>

using fake::asked;
using fake::platform;

namespace {

unsigned int last_octet(const char *ip) {
  return websIP2Num(ip) & 0xFFU;
}

bool parse(const std::string &text, in6_addr &address) {
  return inet_pton(AF_INET6, text.substr(0, text.find('/')).c_str(), &address) == 1;
}

constexpr int in_order = 0, no_addresses = 1, start_above_end = 5;

} // namespace

int websLengthRule(const char *text, int max) {
  asked("length " + std::to_string(max) + " " + text);
  return std::strlen(text) <= static_cast<std::size_t>(max) || !platform.judges ? 1 : 0;
}

int webcheckNumber(const char *text) {
  if (!platform.judges) return 1;
  return *text != '\0' && text[std::strspn(text, "0123456789")] == '\0' ? 1 : 0;
}

int webscheckRange(const char *text, int min, int max) {
  if (!platform.judges) return 1;
  if (webcheckNumber(text) == 0) return 0;
  const long number = std::strtol(text, nullptr, 10);
  return number >= min && number <= max ? 1 : 0;
}

int websInputValueRule(const char *value, int min, int max) {
  return webscheckRange(value, min, max);
}

int websCheckURL(const char *url) {
  asked(std::string("url ") + url);
  return std::strpbrk(url, "<>") == nullptr || !platform.judges ? 0 : -2;
}

int isIpLastChar0(const char *ip) {
  asked(std::string("octet 0 ") + ip);
  return last_octet(ip) == 0 && platform.judges ? -1 : 0;
}

int isIpLastChar255(const char *ip) {
  asked(std::string("octet 255 ") + ip);
  return last_octet(ip) == 255 && platform.judges ? -1 : 0;
}

int check_ipv4_start_end(const char *start, const char *end) {
  asked(std::string("range ") + start + " " + end);
  return websIP2Num(start) <= websIP2Num(end) || !platform.judges ? in_order : start_above_end;
}

int is_ip6_and_prefix_valid(const char *text) {
  asked(std::string("ipv6 ") + text);
  if (!platform.judges) return 0;
  in6_addr address;
  const char *prefix = std::strchr(text, '/');
  return parse(text, address) && (prefix == nullptr || webscheckRange(prefix + 1, 0, 128) != 0) ? 0 : -1;
}

int check_ipv6_start_end(const char *start, const char *end) {
  asked(std::string("range6 ") + start + " " + end);
  in6_addr first, last;
  if (*end == '\0' || !platform.judges) return in_order;
  if (!parse(start, first) || !parse(end, last)) return no_addresses;
  return std::memcmp(&first, &last, sizeof first) <= 0 ? in_order : start_above_end;
}
