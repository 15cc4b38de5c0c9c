// Rows of lists, which the standard calls instances of objects.
#include "agent/attributes.hpp"
#include "agent/methods.hpp"

namespace kova::agent {
namespace {

request::RowChange expect_done(request::RowChange result) {
  if (result.fault) throw RpcFault{result.fault->code, result.fault->detail};
  return result;
}

} // namespace

void add_object(Store &, const pugi::xml_node &call, pugi::xml_node answer) {
  const std::string object = text_argument(call, "ObjectName", longest_name),
                    key = text_argument(call, "ParameterKey", longest_key);
  const request::RowChange row = expect_done(request::add_row(object));
  store_parameter_key(key);
  add(answer, "InstanceNumber", std::to_string(row.instance));
  add(answer, "Status", "0");
}

void delete_object(Store &store, const pugi::xml_node &call, pugi::xml_node answer) {
  const std::string object = text_argument(call, "ObjectName", longest_name),
                    key = text_argument(call, "ParameterKey", longest_key);
  const request::RowChange row = expect_done(request::delete_row(object));
  remember_values(store, std::span(&row.object, 1)); // the rows behind it have moved up
  store_parameter_key(key);
  add(answer, "Status", "0");
}

} // namespace kova::agent
