// Values, names and attributes of parameters.
#include "agent/attributes.hpp"
#include "agent/events.hpp"
#include "agent/inform.hpp"
#include "agent/methods.hpp"
#include "agent/names.hpp"
#include "agent/values.hpp"
#include "device/faults.hpp"

#include <algorithm>
#include <map>
#include <set>

namespace kova::agent {
namespace {

constexpr std::string_view diagnostics_state = ".DiagnosticsState", requested = "Requested";

std::string name_of(const pugi::xml_node &element) {
  return text_argument(element, "Name", longest_name);
}

std::vector<std::string> requested_names(const pugi::xml_node &call) {
  std::vector<std::string> names;
  for (const pugi::xml_node &name : array_argument(call, "ParameterNames", "string"))
    names.emplace_back(name.text().get());
  return names;
}

// The parameters that the path names: itself, or all below it.
std::vector<std::string> parameters_at(const std::string &path) {
  request::Names found = request::get_names(path, false);
  if (found.fault) throw RpcFault{found.fault->code, found.fault->path + ": " + found.fault->detail};
  std::vector<std::string> paths;
  for (request::Name &name : found.names)
    if (!name.path.ends_with('.')) paths.push_back(std::move(name.path));
  return paths;
}

// The type that the ACS has declared must be the parameter's.
std::optional<request::Fault> declared_type_fault(const std::string &path, const pugi::xml_node &value) {
  const model::Parameter *parameter = model::find(path);
  for (const pugi::xml_attribute &attribute : value.attributes()) {
    if (!std::string_view(attribute.name()).ends_with(":type") || !parameter) continue;
    const std::string_view declared = attribute.value();
    const std::string expected = wire_type(parameter->type);
    if (declared.substr(declared.find(':') + 1) == expected.substr(expected.find(':') + 1)) continue;
    return request::Fault{path, request::FaultCode::InvalidType,
                          "it is " + expected + ", not " + std::string(declared)};
  }
  return std::nullopt;
}

std::vector<request::Assignment> requested_assignments(const pugi::xml_node &call) {
  std::vector<request::Assignment> assignments;
  std::vector<request::Fault> faults;
  std::set<std::string> names;
  for (const pugi::xml_node &element : array_argument(call, "ParameterList", "ParameterValueStruct")) {
    const pugi::xml_node value = argument(element, "Value");
    assignments.push_back({name_of(element), value.text().get()});
    const std::string &path = assignments.back().path;
    if (!names.insert(path).second) throw invalid_arguments(path + " is given twice");
    if (auto fault = declared_type_fault(path, value)) faults.push_back(std::move(*fault));
  }
  if (!faults.empty()) throw RpcFault{request::FaultCode::InvalidArguments, "", std::move(faults)};
  return assignments;
}

std::string object_of(const std::string &path) {
  return path.substr(0, path.rfind('.') + 1);
}

// A test that is asked for is reported when it ends; one of which anything else is set is aborted by that.
void note_diagnostics(Transaction &change, std::span<const request::Assignment> assignments) {
  for (const auto &[path, value] : assignments)
    change.erase_all(stored::diagnostics + object_of(path));
  for (const auto &[path, value] : assignments)
    if (path.ends_with(diagnostics_state) && value == requested) change.put(stored::diagnostics + path, "");
}

std::vector<request::Fault> faults_on_demand(const auto &items) {
  const device::Faults wanted = device::faults();
  std::vector<request::Fault> found;
  for (const auto &item : items)
    if (wanted.fails(item.path))
      found.push_back({item.path, request::FaultCode::InternalError, "a fault on demand"});
  return found;
}

} // namespace

void store_parameter_key(const std::string &key) {
  model::find(parameter::parameter_key)->set.call(key.c_str());
}

void settle_diagnostics(Store &store) {
  const auto pending =
      store.read([](const Transaction &reading) { return reading.entries(stored::diagnostics); });
  for (const auto &each : pending) {
    const std::string &record = each.first;
    const std::string state = read_value(store, record.substr(std::string_view(stored::diagnostics).size()));
    if (state == requested) continue;
    store.change([&](Transaction &change) {
      change.erase(record);
      if (state == "Complete" || state.starts_with("Error")) add_event(change, event::diagnostics_complete);
    });
  }
}

void get_parameter_names(Store &, const pugi::xml_node &call, pugi::xml_node answer) {
  const std::string path = text_argument(call, "ParameterPath", longest_name);
  const request::Names found = request::get_names(path, boolean_argument(call, "NextLevel"));
  if (found.fault) throw RpcFault{found.fault->code, found.fault->detail};
  add_array(answer, "ParameterList", "cwmp:ParameterInfoStruct", [&found](pugi::xml_node list) {
    for (const request::Name &name : found.names) {
      pugi::xml_node one = list.append_child("ParameterInfoStruct");
      add(one, "Name", name.path);
      add(one, "Writable", name.writable ? "1" : "0");
    }
  });
}

void get_parameter_values(Store &store, const pugi::xml_node &call, pugi::xml_node answer) {
  const std::vector<std::string> names = requested_names(call);
  request::Reading reading = read_values(store, names);
  for (const request::Fault &fault : faults_on_demand(reading.values))
    throw RpcFault{fault.code, fault.path + ": " + fault.detail};
  for (const request::Fault &fault : reading.faults) {
    // Of a branch the rest is still of use.
    const bool within_branch = fault.code == request::FaultCode::InternalError &&
                               std::ranges::find(names, fault.path) == names.end();
    if (!within_branch)
      throw RpcFault{fault.code, fault.path + (fault.detail.empty() ? "" : ": " + fault.detail)};
    reading.values.push_back({fault.path, model::find(fault.path)->type, ""});
  }
  add_values(answer, reading.values);
}

void set_parameter_values(Store &store, const pugi::xml_node &call, pugi::xml_node answer) {
  const std::string key = text_argument(call, "ParameterKey", longest_key);
  const std::vector<request::Assignment> assignments = requested_assignments(call);
  if (auto faults = faults_on_demand(assignments); !faults.empty())
    throw RpcFault{request::FaultCode::InvalidArguments, "", std::move(faults)};
  settle_diagnostics(store);
  const request::Setting setting = request::set_values(assignments);
  std::vector<std::string> paths;
  for (const request::Assignment &stored : setting.stored)
    paths.push_back(stored.path);
  remember_values(store, paths);
  store.change([&setting](Transaction &change) { note_diagnostics(change, setting.stored); });
  if (!setting.accepted) throw RpcFault{request::FaultCode::InvalidArguments, "", setting.faults};
  store_parameter_key(key);
  add(answer, "Status", setting.applied ? "0" : "1");
}

void get_parameter_attributes(Store &store, const pugi::xml_node &call, pugi::xml_node answer) {
  std::map<std::string, Attributes> found;
  for (const std::string &name : requested_names(call))
    for (const std::string &path : parameters_at(name))
      found[path] = store.read([&path](const Transaction &reading) { return attributes_of(reading, path); });
  add_array(answer, "ParameterList", "cwmp:ParameterAttributeStruct", [&found](pugi::xml_node list) {
    for (const auto &[path, attributes] : found) {
      pugi::xml_node one = list.append_child("ParameterAttributeStruct");
      add(one, "Name", path);
      add(one, "Notification", std::to_string(static_cast<int>(attributes.notification)));
      add_array(one, "AccessList", "xsd:string",
                [&entities = attributes.access_list](pugi::xml_node access_list) {
                  for (const std::string &entity : entities)
                    add(access_list, "string", entity);
                });
    }
  });
}

void set_parameter_attributes(Store &store, const pugi::xml_node &call, pugi::xml_node) {
  constexpr std::uint32_t most = static_cast<std::uint32_t>(Notification::active);
  std::map<std::string, Attributes> changed;
  std::vector<std::string> newly_watched;
  for (const pugi::xml_node &element :
       array_argument(call, "ParameterList", "SetParameterAttributesStruct")) {
    const std::string name = name_of(element);
    const bool notification_change = boolean_argument(element, "NotificationChange"),
               access_list_change = boolean_argument(element, "AccessListChange");
    const std::uint32_t notification = number_argument(element, "Notification");
    if (notification_change && notification > most)
      throw invalid_arguments("Notification is none of 0, 1 and 2");
    std::vector<std::string> access_list;
    for (const pugi::xml_node &entity : array_argument(element, "AccessList", "string"))
      access_list.push_back(cut(entity.text().get(), 64));
    for (const std::string &path : parameters_at(name)) {
      const bool forced = notification_change && is_forced_active(path) && notification != most;
      if (forced && path == name)
        throw RpcFault{request::FaultCode::NotificationRejected, path + " is always reported at once"};
      const auto given = changed.find(path);
      Attributes attributes =
          given != changed.end()
              ? given->second
              : store.read([&path](const Transaction &reading) { return attributes_of(reading, path); });
      if (notification_change && !forced) {
        if (attributes.notification == Notification::off) newly_watched.push_back(path);
        attributes.notification = static_cast<Notification>(notification);
      }
      if (access_list_change) attributes.access_list = access_list;
      changed[path] = attributes;
    }
  }
  store.change([&changed](Transaction &change) {
    for (const auto &[path, attributes] : changed)
      set_attributes(change, path, attributes);
  });
  remember_values(store, newly_watched);
}

} // namespace kova::agent
