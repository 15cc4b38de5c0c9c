// Static routes: a rule list whose refusals are numbered, and whose changes restart the routing service.
#include "platform/nvram.h"
#include "src/frame/trace.hpp"
#include "src/security/rule_list.hpp"

#include <kova/security.h>

#include <cstdio>
#include <cstdlib>
#include <iterator>

namespace kova::rules {

namespace {

enum RouteCode {
  ok,
  type_blank,
  type_wrong,
  gateway_blank,
  gateway_wrong,
  network_blank,
  network_wrong,
  mask_blank,
  mask_wrong,
  too_many,
  existing
};
constexpr const char *code_texts[] = {"OK.",
                                      "Route type should not be blank.",
                                      "Route type with wrong value.",
                                      "Gateway ip should not be blank.",
                                      "Gateway ip is in wrong format.",
                                      "Destination network IP address should not be blank.",
                                      "Destination network IP address is in wrong format.",
                                      "Destination IP subnet mask should not be blank.",
                                      "Destination IP subnet mask is in wrong format.",
                                      "The Router number exceeds.",
                                      "This route has been in existence.",
                                      "Fail.",
                                      "Unknown Error.",
                                      "Error."};

int check_route(const char *value, int) {
  const int code = checkX_RouteAllParam(value);
  if (code != ok) dbg_trace("%s\n", RouteSetting_getErrStr(code));
  return code;
}

constexpr List routes = {"Route",
                         "Route",
                         "static_route_key",
                         nullptr,
                         " , , ,0",
                         {whole_text, first_255, whole_text},
                         {keeps_63, keeps_63},
                         {},
                         check_route,
                         existing,
                         "ce_route"};

enum Field { gateway, network, mask, type };

// A field of a row; false when the row has it not.
struct RouteField {
  char text[64] = {};
  bool present;
  RouteField(const char *row, Field field) : present(getNthField(field, row, ',', text, sizeof text) == 0) {}
  bool blank() const { return !present || *text == '\0'; }
  bool valid(int item) const {
    constexpr int rules = 19;
    return tarn_check_param(rules, text, item) == 0;
  }
};

} // namespace

} // namespace kova::rules

using namespace kova;
using namespace kova::rules;

int kovaAddXRouteRulesRule(void) {
  return add(routes);
}
int kovaSetXRouteRulesRule(int index, const char *value) {
  return set(routes, index, value);
}
int kovaDelXRouteRulesRule(int index) {
  return remove(routes, index);
}

int kovaGetXRouteRulesNumberOfEntries(char *buf, unsigned int buflen) {
  char count[16];
  std::snprintf(count, sizeof count, "%d", firewall_getRuleNums(load_text(routes.key)));
  return answer(count, buf, buflen);
}

// Unlike other lists, a row beyond the last is an error here.
int kovaGetXRouteRulesRule(int index, char *buf, unsigned int len) {
  const OwnedText text = load_text(routes.key);
  const int count = firewall_getRuleNums(text);
  Text row;
  if (index < 1 || index > count || getNthField(index - 1, text, ';', row.chars, Text::size) != 0) {
    dbg_trace("Rule index %d out of range %d!\n", index, count);
    return -1;
  }
  return answer_terminated(row, buf, len);
}

int checkX_RouteAllParam(const char *row) {
  enum Item { gateway_item, network_item, mask_item, type_item };
  row = text_or_empty(row);
  const RouteField gateway_ip(row, gateway), network_ip(row, network), network_mask(row, mask),
      route_type(row, type);
  if (route_type.blank()) return type_blank;
  if (!route_type.valid(type_item)) return type_wrong;
  const bool through_gateway = leading_number(route_type.text) == 0; // judged by its rule
  if (through_gateway) {
    if (gateway_ip.blank()) return gateway_blank;
    if (!gateway_ip.valid(gateway_item)) return gateway_wrong;
  } else if (!gateway_ip.present || *gateway_ip.text != '\0') {
    return gateway_wrong;
  }
  if (network_ip.blank()) return network_blank;
  if (!network_ip.valid(network_item)) return network_wrong;
  if (network_mask.blank()) return mask_blank;
  return network_mask.valid(mask_item) ? ok : mask_wrong;
}

const char *RouteSetting_getErrStr(int code) {
  return code >= 0 && code < static_cast<int>(std::size(code_texts)) ? code_texts[code] : "Unknown.";
}
