// The access-control list: which hosts may reach the device's management services.
#include "platform/nvram.h"
#include "platform/webs.h"
#include "src/frame/trace.hpp"
#include "src/security/rule_list.hpp"

#include <arpa/inet.h>
#include <kova/security.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace kova::rules {

namespace {

constexpr const char *list_key = "AclRules";

int check_row(const char *value, int position) {
  return checkACLSettingsRulesAllParam(value, position);
}

constexpr List access_list = {"ACL",
                              "ACLSettings",
                              list_key,
                              nullptr,
                              "4, ,,0",
                              {first_255, first_255, first_255},
                              {keeps_255, keeps_63},
                              {"AclEnable"},
                              check_row};

constexpr const char *wan_side = "0";

struct AclRow {
  char service[64] = {}, start[64] = {}, end[64] = {}, interface[64] = {};
  explicit AclRow(const char *row) {
    getNthField(0, row, ',', service, sizeof service);
    getNthField(1, row, ',', start, sizeof start);
    getNthField(2, row, ',', end, sizeof end);
    getNthField(3, row, ',', interface, sizeof interface);
  }
  bool is_ipv6() const {
    in6_addr address;
    return inet_pton(AF_INET6, start, &address) == 1;
  }
};

bool complain(const char *message) {
  dbg_trace("%s", message);
  return false;
}

// A host on the WAN side must not have an address of the gateway's network, one on the LAN side must.
bool judge_address(const AclRow &row, bool is_start) {
  constexpr int rules = 16, start_item = 8, end_item = 9, empty = -1, in_gateway_network = -4;
  const int code = tarn_check_param(rules, is_start ? row.start : row.end, is_start ? start_item : end_item);
  if (is_start && code == empty) return complain("Please input start IP address.");
  if (code == -2 || code == -3)
    return complain(is_start ? "Invalid start IP address." : "Invalid end IP address.");
  const bool wan = leading_number(row.interface) == leading_number(wan_side); // judged by its range
  if (wan && code == in_gateway_network)
    return complain("IP address can't be the same with gateway address network segment.");
  if (!wan && code != in_gateway_network)
    return complain("IP address must be the same with gateway address network segment.");
  return true;
}

bool judge_fields(const AclRow &row) {
  if (*row.interface == '\0' || webscheckRange(row.interface, 0, 1) == 0) return false;
  if (*row.service == '\0' ||
      (webscheckRange(row.service, 4, 4) == 0 && webscheckRange(row.service, 7, 8) == 0))
    return false;
  if (!judge_address(row, true)) return false;
  const bool single_host = *row.start != '\0' && *row.end == '\0';
  return single_host || judge_address(row, false);
}

// ---- The IPv6 path

// Compares two addresses as four words: '<', '=', '>', or '?' when one is no IPv6 address.
char compare_ipv6(const char *a, const char *b) {
  in6_addr first, second;
  if (inet_pton(AF_INET6, a, &first) != 1 || inet_pton(AF_INET6, b, &second) != 1) return '?';
  const int order = std::memcmp(&first, &second, sizeof first); // network order: most significant byte first
  return order < 0 ? '<' : order > 0 ? '>' : '=';
}

struct Ipv6Text {
  char chars[INET6_ADDRSTRLEN] = {};
  // Takes an address in its canonical form.
  bool take(const char *address) {
    in6_addr parsed;
    return inet_pton(AF_INET6, address, &parsed) == 1 &&
           inet_ntop(AF_INET6, &parsed, chars, sizeof chars) != nullptr;
  }
};

// A rule as the firewall keeps it in memory.
struct AclRule {
  bool has_hash = false;
  uint32_t hash = 0;
  int service = 0;
  in6_addr start = {};
  bool has_end = false;
  in6_addr end = {};
  int family = AF_INET6;

  bool fill(const char *marker, int service_type, const Ipv6Text &first, const Ipv6Text &last,
            const char *row) {
    has_hash = *marker != '\0';
    if (has_hash) hash = murmur_hash_3(row, static_cast<int>(std::strlen(row)), 0);
    service = service_type;
    has_end = last.chars[0] != '\0';
    return inet_pton(AF_INET6, first.chars, &start) == 1 &&
           (!has_end || inet_pton(AF_INET6, last.chars, &end) == 1);
  }
};

// The end of a range, empty when it is a single host. False for a range that is none.
bool normalise_end(const Ipv6Text &start, const char *end, Ipv6Text &normal) {
  if (is_empty(end)) return true;
  const char order = normal.take(end) ? compare_ipv6(start.chars, normal.chars) : '?';
  if (order == '=') normal = {};
  return order == '<' || order == '=';
}

bool append_ipv6_rule(const char *marker, const char *interface, int service, const Ipv6Text &start,
                      const Ipv6Text &end) {
  const OwnedText list = load_text(list_key);
  char row[256];
  std::snprintf(row, sizeof row, "%d,%s,%s,%.63s", service, start.chars, end.chars, interface);
  AclRule rule;
  if (*list != '\0' && !rule.fill(marker, service, start, end, row)) return false;
  const std::size_t room = std::strlen(list) + sizeof row + 1;
  const OwnedText longer(static_cast<char *>(std::calloc(1, room)));
  if (longer.writable() == nullptr) return false;
  std::snprintf(longer.writable(), room, "%s%s%s", static_cast<const char *>(list), *list != '\0' ? ";" : "",
                row);
  store(list_key, longer);
  return true;
}

} // namespace

} // namespace kova::rules

using namespace kova;
using namespace kova::rules;

KOVA_RULE_LIST(kovaaddACLSettings, kovaSetACLSettingsRules, kovaGetACLSettingsRules, kovadelACLSettings,
               access_list)

int checkACLSettingsRulesAllParam(const char *row, int position) {
  const AclRow fields(text_or_empty(row));
  if (!judge_fields(fields)) return -1;
  if (!fields.is_ipv6()) {
    const char *end = *fields.end != '\0' ? fields.end : fields.start;
    if (check_ipv4_start_end(fields.start, end) == 0) return 0;
    dbg_trace("ARK_IPV4_RANG_FAIL");
    return -1;
  }
  if (check_ipv6_start_end(fields.start, fields.end) != 0) {
    dbg_trace("ARK_IPV6_RANG_FAIL");
    return -1;
  }
  char marker[16] = {};
  if (position != 0) std::snprintf(marker, sizeof marker, "%d", position);
  if (_aclConfigIpv6(marker, fields.interface, fields.service, fields.start, fields.end) == 1) return 0;
  dbg_trace("ACL config failed.");
  return -1;
}

int _aclConfigIpv6(const char *marker, const char *interface, const char *serviceType, const char *startIP,
                   const char *endIP) {
  constexpr int done = 1, refused = 0, most_rows_before = 15;
  marker = text_or_empty(marker);
  if (*marker == '\0' && firewall_getRuleNums(load_text(list_key)) > most_rows_before) return refused;
  const int service = leading_number(text_or_empty(serviceType));
  if (service != 4 && service != 7 && service != 8) {
    dbg_trace("[TR069][Error_%s]:wrong proto_num.\n", __func__);
    return refused;
  }
  Ipv6Text start, end;
  if (!start.take(text_or_empty(startIP))) return refused;
  if (!normalise_end(start, endIP, end)) {
    dbg_trace("[TR069][Error_%s]:invalid range.", __func__);
    return refused;
  }
  return append_ipv6_rule(marker, text_or_empty(interface), service, start, end) ? done : refused;
}
