// Static routes: a list of rows whose refusals are numbered, and whose changes restart the routing service.
#include "src/frame/rows.hpp"
#include "src/frame/trace.hpp"
#include "src/lists/fields.hpp"
#include "src/lists/row_list.hpp"

#include <kova/security.h>

#include <iterator>

namespace kova::routing {

namespace {

using namespace lists;

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

// clang-format off
constexpr List routes = {"Route", "Route", "static_route_key", nullptr, " , , ,0", {whole_text, first_255, whole_text},
                         {keeps_63, keeps_63}, {}, check_route, existing, "ce_route"};
// clang-format on

int answer_row_count(const List &list, char *buf, unsigned int buflen) {
  return answer_number(firewall_getRuleNums(load_text(list.key)), buf, buflen);
}

enum Field { gateway, network, mask, type, field_count };
using Route = Fields<field_count, 64>;

// The rule has to answer exactly 0.
bool valid(const Route &route, Field field, Rule rule) {
  return ask(rule, route[field]) == 0;
}

} // namespace

} // namespace kova::routing

using namespace kova;
using namespace kova::routing;

#include "src/wan/routes.def"

int kovaAddXRouteRulesRule(void) {
  return add(routes);
}
int kovaSetXRouteRulesRule(int index, const char *value) {
  return set(routes, index, value);
}
int kovaDelXRouteRulesRule(int index) {
  return lists::remove(routes, index);
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

// A row that has a type, its last field, has them all.
int checkX_RouteAllParam(const char *row) {
  const Route route(row);
  if (is_empty(route[type])) return type_blank;
  if (!valid(route, type, RULE_ROUTE_TYPE)) return type_wrong;
  const bool through_gateway = leading_number(route[type]) == 0; // judged by its rule
  if (through_gateway) {
    if (is_empty(route[gateway])) return gateway_blank;
    if (!valid(route, gateway, RULE_ROUTE_GATEWAY)) return gateway_wrong;
  } else if (!is_empty(route[gateway])) {
    return gateway_wrong;
  }
  if (is_empty(route[network])) return network_blank;
  if (!valid(route, network, RULE_ROUTE_NETWORK)) return network_wrong;
  if (is_empty(route[mask])) return mask_blank;
  return valid(route, mask, RULE_ROUTE_MASK) ? ok : mask_wrong;
}

const char *RouteSetting_getErrStr(int code) {
  return code >= 0 && code < static_cast<int>(std::size(code_texts)) ? code_texts[code] : "Unknown.";
}
