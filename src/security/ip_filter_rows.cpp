// The checks of IPv4 and IPv6 filter rows: ten comma-separated fields, the first failing test refuses the row.
#include "platform/nvram.h"
#include "platform/webs.h"
#include "src/frame/settings.hpp"
#include "src/frame/trace.hpp"

#include <arpa/inet.h>
#include <kova/security.h>

#include <cstdlib>
#include <cstring>

namespace kova::security {

namespace {

constexpr int rules = 17;
enum Item {
  dst_begin_item = 4,
  dst_end_item,
  src_begin_item,
  src_end_item,
  dst_port_begin_item,
  dst_port_end_item,
  src_port_begin_item,
  src_port_end_item,
  protocol_item,
  comment_item
};
constexpr int comment_field = 9;

#define REFUSE(...)                                                                                          \
  do {                                                                                                       \
    dbg_trace(__VA_ARGS__);                                                                                  \
    return false;                                                                                            \
  } while (false)

// Takes a row apart. Every field but the comment must fit the record.
bool split_row(const char *row, IPFilterRow &out) {
  char *fields[] = {out.srcIPBegin, out.srcIPEnd,     out.srcPortBegin, out.srcPortEnd, out.dstIPBegin,
                    out.dstIPEnd,   out.dstPortBegin, out.dstPortEnd,   out.protocol,   out.comment};
  constexpr std::size_t field_size = sizeof out.comment;
  out = {};
  for (int i = 0; i <= comment_field; ++i) {
    char text[64] = {};
    if (getNthField(i, row, ',', text, sizeof text) != 0) return false;
    if (i != comment_field && std::strlen(text) >= field_size) return false;
    std::strncpy(fields[i], text, field_size - 1);
  }
  return true;
}

// The comment whole: the record keeps its beginning only.
struct Comment {
  char text[64] = {};
  explicit Comment(const char *row) { getNthField(comment_field, row, ',', text, sizeof text); }
};

bool is_given(const char *field) {
  return *field != '\0';
}
bool is_whole_number(const char *text) {
  return *text != '\0' && text[std::strspn(text, "0123456789")] == '\0';
}
int number(const char *text) {
  return leading_number(text);
} // no number counts as 0

// ---- IPv4 addresses

struct Address {
  const char *text, *what; // "start destination", ...
  Item item;
  uint32_t value = 0;

  bool judge() {
    in_addr address;
    if (!is_given(text)) return true;
    if (!passes(kova::rule_of(rules, item), text) || inet_pton(AF_INET, text, &address) != 1)
      REFUSE("[TR069][Error_%d]The %s IP address is invalid!\n", __LINE__, what);
    if (isIpLastChar0(text) < 0)
      REFUSE("[TR069][Error_%d]The %s IP address last character is 0!\n", __LINE__, what);
    if (isIpLastChar255(text) < 0)
      REFUSE("[TR069][Error_%d]The %s IP address last character is 255!\n", __LINE__, what);
    value = ntohl(address.s_addr);
    return true;
  }
};

// The network on the near side of the filter.
class Lan {
public:
  Lan() : mask_(stored("lan_netmask")), network_(stored("lan_ip") & mask_) {}
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
    REFUSE("[TR069][Error_%d]Please input the start %s IP address!\n", __LINE__, what);
  if (begin.value > end.value)
    REFUSE("[TR069][Error_%d]The start %s IP address should not be more than the end!\n", __LINE__, what);
  if (lan.contains(begin) != lan.contains(end))
    REFUSE("[TR069][Error_%d]The range of the %s IP address should not between LAN and WAN!\n", __LINE__,
           what);
  return true;
}

bool judge_addresses(const IPFilterRow &row) {
  Address dst_begin = {row.dstIPBegin, "start destination", dst_begin_item},
          dst_end = {row.dstIPEnd, "end destination", dst_end_item},
          src_begin = {row.srcIPBegin, "start source", src_begin_item},
          src_end = {row.srcIPEnd, "end source", src_end_item};
  const Lan lan;
  if (!dst_begin.judge() || !dst_end.judge() || !src_begin.judge() || !src_end.judge()) return false;
  const bool any = is_given(dst_begin.text) || is_given(dst_end.text) || is_given(src_begin.text) ||
                   is_given(src_end.text);
  if (!any) REFUSE("[TR069][Error_%d]Please input the start destination IP address!\n", __LINE__);
  if (!judge_range(dst_begin, dst_end, lan, "destination") || !judge_range(src_begin, src_end, lan, "source"))
    return false;
  // A rule always crosses between LAN and WAN.
  if (is_given(dst_begin.text) && is_given(src_begin.text) &&
      lan.contains(dst_begin) == lan.contains(src_begin))
    REFUSE("[TR069][Error_%d]The source and destination IP addresses should be between LAN and WAN!\n",
           __LINE__);
  return true;
}

// ---- IPv4 protocol and ports

bool judge_port_forms(const IPFilterRow &row) {
  const struct {
    const char *text, *what;
    Item item;
  } fields[] = {{row.protocol, "protocol", protocol_item},
                {row.dstPortBegin, "destination start port", dst_port_begin_item},
                {row.dstPortEnd, "destination END port", dst_port_end_item},
                {row.srcPortBegin, "source start port", src_port_begin_item},
                {row.srcPortEnd, "source END port", src_port_end_item}};
  for (const auto &[text, what, item] : fields) {
    const int code = tarn_check_param(rules, text, item);
    if (code == -1) REFUSE("Invalid value! %s is Empty\n", what);
    if (code == -2) REFUSE("Invalid value! %s invalid.\n", what);
    if (code < 0) REFUSE("Invalid value!\n");
  }
  return true;
}

bool judge_port(const char *port, const char *what) {
  if (!is_given(port)) return true;
  if (!is_whole_number(port)) REFUSE("[TR069][Error_%d]The %s port is invalid!\n", __LINE__, what);
  const long value = std::strtol(port, nullptr, 10);
  if (value < 1 || value > 65535)
    REFUSE("[TR069][Error_%d]The port number should be between 1 and 65535!\n", __LINE__);
  return true;
}

bool judge_port_range(const char *begin, const char *end, const char *begin_name, const char *end_name) {
  if (!judge_port(begin, begin_name) || !judge_port(end, end_name)) return false;
  if (!is_given(end)) return true; // a start alone is a single port
  if (!is_given(begin)) REFUSE("[TR069][Error_%d]Please input the %s port!\n", __LINE__, begin_name);
  if (number(begin) > number(end))
    REFUSE("[TR069][Error_%d]The %s port should be more than or equal to the start!\n", __LINE__, end_name);
  return true;
}

bool judge_protocol_and_ports(const IPFilterRow &row) {
  if (!judge_port_forms(row)) return false;
  if (!is_whole_number(row.protocol)) REFUSE("[TR069][Error_%d]The protocol is invalid!\n", __LINE__);
  switch (number(row.protocol)) {
  case 1:
  case 2:
  case 3:
    return judge_port_range(row.dstPortBegin, row.dstPortEnd, "start destination", "end destination") &&
           judge_port_range(row.srcPortBegin, row.srcPortEnd, "start source", "end source");
  case 4:
  case 6: // protocols without ports
    if (is_given(row.dstPortBegin) || is_given(row.dstPortEnd) || is_given(row.srcPortBegin) ||
        is_given(row.srcPortEnd))
      REFUSE("[TR069][Error_%d]The port number makes no sense in the protocol!\n", __LINE__);
    return true;
  default:
    REFUSE("[TR069][Error_%d]The protocol is invalid!\n", __LINE__);
  }
}

bool judge_comment(const char *comment) {
  constexpr std::size_t longest = 32;
  const int code = tarn_check_param(rules, comment, comment_item);
  if (code < 0) REFUSE(code == -2 ? "Invalid value! comment is invalid\n" : "Invalid value!\n");
  if (std::strlen(comment) > longest)
    REFUSE("[TR069][Error_%d]The characters number in comment exceeds 32!\n", __LINE__);
  if (comment[std::strcspn(comment, "\"%&'+,:;<>?\\^")] != '\0')
    REFUSE("[TR069][Error_%d]Comment include invalid characters.\n", __LINE__);
  return true;
}

// ---- IPv6

bool judge_ipv6_address(const char *address, bool required) {
  constexpr int longest = 39;
  if (!is_given(address)) return !required;
  return websLengthRule(address, longest) != 0 && is_ip6_and_prefix_valid(address) != -1;
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
    REFUSE("[%s_%d]Dest IP start more than end.\n", __func__, __LINE__);
  if (check_ipv6_start_end(row.dstIPBegin, row.dstIPEnd) == start_above_end)
    REFUSE("[%s_%d]Source IP start more than end.\n", __func__, __LINE__);
  // So a start port without an end port is refused.
  if (number(row.srcPortBegin) > number(row.srcPortEnd))
    REFUSE("[%s_%d]Dest port start more than end.\n", __func__, __LINE__);
  if (number(row.dstPortBegin) > number(row.dstPortEnd))
    REFUSE("[%s_%d]Source port start more than end.\n", __func__, __LINE__);
  const int protocol = number(row.protocol);
  const bool known = (protocol >= 1 && protocol <= 4) || protocol == 6;
  return known && tarn_check_param(rules, comment, comment_item) == 0;
}

} // namespace

} // namespace kova::security

using namespace kova::security;

int IPFiltersplitAllParam(const char *row, IPFilterRow *out) {
  return out != nullptr && split_row(row, *out) ? 0 : -1;
}

int IPV6FiltersplitAllParam(const char *row, IPFilterRow *out) {
  return IPFiltersplitAllParam(row, out);
}

int checkIPFilterAllParam(const char *row) {
  IPFilterRow fields;
  if (IPFiltersplitAllParam(row, &fields) != 0) return -1;
  const bool valid =
      judge_addresses(fields) && judge_protocol_and_ports(fields) && judge_comment(Comment(row).text);
  return valid ? 0 : -1;
}

int checkIPV6FilterAllParam(const char *row) {
  IPFilterRow fields;
  if (IPV6FiltersplitAllParam(row, &fields) != 0) return -1;
  return judge_ipv6_row(fields, Comment(row).text) ? 0 : -1;
}
