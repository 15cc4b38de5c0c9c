// The RPC methods of the device.
#pragma once

#include "agent/soap.hpp"
#include "agent/store.hpp"

#include <span>

namespace kova::agent {

// Serves a call: fills the answer, or throws RpcFault and has changed nothing.
using Method = void(Store &store, const pugi::xml_node &call, pugi::xml_node answer);

struct NamedMethod {
  const char *name;
  Method *serve;
};

std::span<const NamedMethod> methods();

Method get_rpc_methods;
Method get_parameter_names, get_parameter_values, set_parameter_values, get_parameter_attributes,
    set_parameter_attributes;
Method add_object, delete_object;
Method reboot, factory_reset, schedule_inform;
Method download, upload, get_queued_transfers;

// Stores the ACS's mark of a change that it has made.
void store_parameter_key(const std::string &key);

// A diagnostics test that the ACS has asked for ends with its event; what is no longer asked for does not.
void settle_diagnostics(Store &store);

constexpr std::size_t longest_name = 256, longest_key = 32;

} // namespace kova::agent
