#include "agent/methods.hpp"

namespace kova::agent {

std::span<const NamedMethod> methods() {
  static constexpr NamedMethod all[] = {
      {"GetRPCMethods", get_rpc_methods},
      {"GetParameterNames", get_parameter_names},
      {"GetParameterValues", get_parameter_values},
      {"SetParameterValues", set_parameter_values},
      {"GetParameterAttributes", get_parameter_attributes},
      {"SetParameterAttributes", set_parameter_attributes},
      {"AddObject", add_object},
      {"DeleteObject", delete_object},
      {"Reboot", reboot},
      {"FactoryReset", factory_reset},
      {"ScheduleInform", schedule_inform},
      {"Download", download},
      {"Upload", upload},
      {"GetQueuedTransfers", get_queued_transfers},
  };
  return all;
}

void get_rpc_methods(Store &, const pugi::xml_node &, pugi::xml_node answer) {
  add_array(answer, "MethodList", "xsd:string", [](pugi::xml_node list) {
    for (const NamedMethod &method : methods())
      add(list, "string", method.name);
  });
}

} // namespace kova::agent
