// Rows of lists, which the standard calls instances of objects.
#include "agent/attributes.hpp"
#include "agent/methods.hpp"

namespace kova::agent {
namespace {

void pass_on(const request::RowChange &change) {
  if (change.fault) throw RpcFault{change.fault->code, change.fault->detail};
}

} // namespace

void add_object(Store &, const pugi::xml_node &call, pugi::xml_node answer) {
  const std::string object = text_argument(call, "ObjectName", longest_name),
                    key = text_argument(call, "ParameterKey", longest_key);
  const request::RowChange row = request::add_row(object);
  pass_on(row);
  store_parameter_key(key);
  add(answer, "InstanceNumber", std::to_string(row.instance));
  add(answer, "Status", "0");
}

void delete_object(Store &store, const pugi::xml_node &call, pugi::xml_node answer) {
  const std::string object = text_argument(call, "ObjectName", longest_name),
                    key = text_argument(call, "ParameterKey", longest_key);
  const request::RowChange row = request::delete_row(object);
  pass_on(row);
  remember_values(store, std::span(&row.object, 1)); // the rows behind it have moved up
  store_parameter_key(key);
  add(answer, "Status", "0");
}

} // namespace kova::agent
