// The checks of IPv4 and IPv6 filter rows: ten comma-separated fields, the first failing test refuses the row.
#include "platform/keys.hpp"
#include "platform/webs.h"
#include "src/frame/conditions.hpp"
#include "src/frame/settings.hpp"
#include "src/frame/trace.hpp"
#include "src/lists/fields.hpp"

#include <arpa/inet.h>
#include <kova/security.h>

#include <cstdlib>
#include <cstring>

namespace kova::security {

namespace {

// The fields whole: the record keeps only the beginning of a comment.
using RowFields = Fields<10, 64>;
constexpr int comment_field = 9;

// Every field but the comment must fit the record.
bool fill(const RowFields &fields, IPFilterRow &row) {
  char *const record[] = {row.srcIPBegin, row.srcIPEnd,     row.srcPortBegin, row.srcPortEnd, row.dstIPBegin,
                          row.dstIPEnd,   row.dstPortBegin, row.dstPortEnd,   row.protocol,   row.comment};
  constexpr std::size_t field_size = sizeof row.comment;
  row = {};
  for (int i = 0; i <= comment_field; ++i) {
    if (!fields.has(i) || (i != comment_field && std::strlen(fields[i]) >= field_size)) return false;
    std::strncpy(record[i], fields[i], field_size - 1);
  }
  return true;
}

bool is_given(const char *field) {
  return *field != '\0';
}
bool is_whole_number(const char *text) {
  return is_given(text) && is_digits(text);
}

// ---- IPv4 addresses

struct Address {
  const char *text, *what; // "start destination", ...
  Rule rule;
  uint32_t value = 0;

  bool judge() {
    in_addr address;
    if (!is_given(text)) return true;
    if (!passes(rule, text) || inet_pton(AF_INET, text, &address) != 1)
      return refused("[TR069][Error_%d]The %s IP address is invalid!\n", __LINE__, what);
    if (isIpLastChar0(text) < 0)
      return refused("[TR069][Error_%d]The %s IP address last character is 0!\n", __LINE__, what);
    if (isIpLastChar255(text) < 0)
      return refused("[TR069][Error_%d]The %s IP address last character is 255!\n", __LINE__, what);
    value = ntohl(address.s_addr);
    return true;
  }
};

// The network on the near side of the filter.
class Lan {
public:
  Lan() : mask_(stored(key::lan_netmask)), network_(stored(key::lan_address) & mask_) {}
  bool contains(const Address &address) const { return (address.value & mask_) == network_; }

private:
  static uint32_t stored(const char *key) {
    in_addr address = {};
    inet_pton(AF_INET, load(key), &address);
    return ntohl(address.s_addr);
  }
  uint32_t mask_, network_;
};

// A range needs its start, is in order, and stays on one side.
bool judge_range(const Address &begin, const Address &end, const Lan &lan, const char *what) {
  if (!is_given(end.text)) return true;
  if (!is_given(begin.text))
    return refused("[TR069][Error_%d]Please input the start %s IP address!\n", __LINE__, what);
  if (begin.value > end.value)
    return refused("[TR069][Error_%d]The start %s IP address should not be more than the end!\n", __LINE__,
                   what);
  if (lan.contains(begin) != lan.contains(end))
    return refused("[TR069][Error_%d]The range of the %s IP address should not between LAN and WAN!\n",
                   __LINE__, what);
  return true;
}

bool judge_addresses(const IPFilterRow &row) {
  Address dst_begin = {row.dstIPBegin, "start destination", RULE_IP_FILTER_DST_BEGIN},
          dst_end = {row.dstIPEnd, "end destination", RULE_IP_FILTER_DST_END},
          src_begin = {row.srcIPBegin, "start source", RULE_IP_FILTER_SRC_BEGIN},
          src_end = {row.srcIPEnd, "end source", RULE_IP_FILTER_SRC_END};
  const Lan lan;
  if (!dst_begin.judge() || !dst_end.judge() || !src_begin.judge() || !src_end.judge()) return false;
  const bool any = is_given(dst_begin.text) || is_given(dst_end.text) || is_given(src_begin.text) ||
                   is_given(src_end.text);
  if (!any) return refused("[TR069][Error_%d]Please input the start destination IP address!\n", __LINE__);
  if (!judge_range(dst_begin, dst_end, lan, "destination") || !judge_range(src_begin, src_end, lan, "source"))
    return false;
  // A rule always crosses between LAN and WAN.
  if (is_given(dst_begin.text) && is_given(src_begin.text) &&
      lan.contains(dst_begin) == lan.contains(src_begin))
    return refused(
        "[TR069][Error_%d]The source and destination IP addresses should be between LAN and WAN!\n",
        __LINE__);
  return true;
}

// ---- IPv4 protocol and ports

bool judge_port_forms(const IPFilterRow &row) {
  const struct {
    const char *text, *what;
    Rule rule;
  } fields[] = {{row.protocol, "protocol", RULE_IP_FILTER_PROTOCOL},
                {row.dstPortBegin, "destination start port", RULE_IP_FILTER_DST_PORT_BEGIN},
                {row.dstPortEnd, "destination END port", RULE_IP_FILTER_DST_PORT_END},
                {row.srcPortBegin, "source start port", RULE_IP_FILTER_SRC_PORT_BEGIN},
                {row.srcPortEnd, "source END port", RULE_IP_FILTER_SRC_PORT_END}};
  for (const auto &[text, what, rule] : fields) {
    const int code = ask(rule, text);
    if (code == -1) return refused("Invalid value! %s is Empty\n", what);
    if (code == -2) return refused("Invalid value! %s invalid.\n", what);
    if (code < 0) return refused("Invalid value!\n");
  }
  return true;
}

bool judge_port(const char *port, const char *what) {
  if (!is_given(port)) return true;
  if (!is_whole_number(port)) return refused("[TR069][Error_%d]The %s port is invalid!\n", __LINE__, what);
  const long value = std::strtol(port, nullptr, 10);
  if (value < 1 || value > 65535)
    return refused("[TR069][Error_%d]The port number should be between 1 and 65535!\n", __LINE__);
  return true;
}

bool judge_port_range(const char *begin, const char *end, const char *begin_name, const char *end_name) {
  if (!judge_port(begin, begin_name) || !judge_port(end, end_name)) return false;
  if (!is_given(end)) return true; // a start alone is a single port
  if (!is_given(begin)) return refused("[TR069][Error_%d]Please input the %s port!\n", __LINE__, begin_name);
  if (leading_number(begin) > leading_number(end))
    return refused("[TR069][Error_%d]The %s port should be more than or equal to the start!\n", __LINE__,
                   end_name);
  return true;
}

bool judge_protocol_and_ports(const IPFilterRow &row) {
  if (!judge_port_forms(row)) return false;
  if (!is_whole_number(row.protocol)) return refused("[TR069][Error_%d]The protocol is invalid!\n", __LINE__);
  switch (leading_number(row.protocol)) {
  case 1:
  case 2:
  case 3:
    return judge_port_range(row.dstPortBegin, row.dstPortEnd, "start destination", "end destination") &&
           judge_port_range(row.srcPortBegin, row.srcPortEnd, "start source", "end source");
  case 4:
  case 6: // protocols without ports
    if (is_given(row.dstPortBegin) || is_given(row.dstPortEnd) || is_given(row.srcPortBegin) ||
        is_given(row.srcPortEnd))
      return refused("[TR069][Error_%d]The port number makes no sense in the protocol!\n", __LINE__);
    return true;
  default:
    return refused("[TR069][Error_%d]The protocol is invalid!\n", __LINE__);
  }
}

bool judge_comment(const char *comment) {
  constexpr std::size_t longest = 32;
  const int code = ask(RULE_IP_FILTER_COMMENT, comment);
  if (code < 0) return refused(code == -2 ? "Invalid value! comment is invalid\n" : "Invalid value!\n");
  if (std::strlen(comment) > longest)
    return refused("[TR069][Error_%d]The characters number in comment exceeds 32!\n", __LINE__);
  if (comment[std::strcspn(comment, "\"%&'+,:;<>?\\^")] != '\0')
    return refused("[TR069][Error_%d]Comment include invalid characters.\n", __LINE__);
  return true;
}

// ---- IPv6

bool judge_ipv6_address(const char *address, bool required) {
  constexpr int longest = 39;
  if (required && !is_given(address)) return false;
  if (websLengthRule(address, longest) == 0) return false;
  return !is_given(address) || is_ip6_and_prefix_valid(address) != -1;
}

// An empty port counts as 0, and 0 is a port here.
bool judge_ipv6_port(const char *port) {
  return !is_given(port) || (webcheckNumber(port) != 0 && std::strtol(port, nullptr, 10) < 65536);
}

bool judge_ipv6_ends(const char *ip_begin, const char *ip_end, const char *port_begin, const char *port_end) {
  return judge_ipv6_address(ip_begin, true) && judge_ipv6_address(ip_end, false) &&
         judge_ipv6_port(port_begin) && judge_ipv6_port(port_end);
}

bool judge_ipv6_row(const IPFilterRow &row, const char *comment) {
  constexpr int start_above_end = 5;
  if (!judge_ipv6_ends(row.srcIPBegin, row.srcIPEnd, row.srcPortBegin, row.srcPortEnd) ||
      !judge_ipv6_ends(row.dstIPBegin, row.dstIPEnd, row.dstPortBegin, row.dstPortEnd))
    return false;
  if (check_ipv6_start_end(row.srcIPBegin, row.srcIPEnd) == start_above_end)
    return refused("[%s_%d]Dest IP start more than end.\n", __func__, __LINE__);
  if (check_ipv6_start_end(row.dstIPBegin, row.dstIPEnd) == start_above_end)
    return refused("[%s_%d]Source IP start more than end.\n", __func__, __LINE__);
  // So a start port without an end port is refused.
  if (leading_number(row.srcPortBegin) > leading_number(row.srcPortEnd))
    return refused("[%s_%d]Dest port start more than end.\n", __func__, __LINE__);
  if (leading_number(row.dstPortBegin) > leading_number(row.dstPortEnd))
    return refused("[%s_%d]Source port start more than end.\n", __func__, __LINE__);
  const int protocol = leading_number(row.protocol);
  const bool known = (protocol >= 1 && protocol <= 4) || protocol == 6;
  return known && ask(RULE_IP_FILTER_COMMENT, comment) == 0;
}

} // namespace

} // namespace kova::security

using namespace kova::security;

int IPFiltersplitAllParam(const char *row, IPFilterRow *out) {
  return out != nullptr && fill(RowFields(row), *out) ? 0 : -1;
}

int IPV6FiltersplitAllParam(const char *row, IPFilterRow *out) {
  return IPFiltersplitAllParam(row, out);
}

int checkIPFilterAllParam(const char *row) {
  const RowFields fields(row);
  IPFilterRow record;
  const bool valid = fill(fields, record) && judge_addresses(record) && judge_protocol_and_ports(record) &&
                     judge_comment(fields[comment_field]);
  return valid ? 0 : -1;
}

int checkIPV6FilterAllParam(const char *row) {
  const RowFields fields(row);
  IPFilterRow record;
  return fill(fields, record) && judge_ipv6_row(record, fields[comment_field]) ? 0 : -1;
}
