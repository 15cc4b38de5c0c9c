#include "agent/inform.hpp"

#include "agent/names.hpp"
#include "agent/status.hpp"
#include "agent/values.hpp"

#include <algorithm>
#include <ctime>
#include <iterator>

namespace kova::agent {
namespace {

constexpr const char *forced[] = {parameter::device_summary,         parameter::spec_version,
                                  parameter::hardware_version,       parameter::software_version,
                                  parameter::provisioning_code,      parameter::parameter_key,
                                  parameter::connection_request_url, parameter::external_ip_address};

bool is_of_transfer(const Event &event) {
  return event.code == event::transfer_complete || event.code == event::m_download ||
         event.code == event::m_upload;
}

} // namespace

std::vector<std::string> Report::event_codes() const {
  std::vector<std::string> codes;
  for (const Event &event : events)
    codes.push_back(event.code);
  return codes;
}

Report pending_report(Store &store) {
  Report report = store.read([](const Transaction &reading) -> Report {
    return {
        pending_events(reading), pending_changes(reading), transfers(reading), {}, retries(reading).count};
  });
  std::erase_if(report.transfers,
                [](const Transfer &transfer) { return transfer.state != TransferState::finished; });
  const auto place = std::ranges::lower_bound(report.events, event::value_change, {}, &Event::code);
  if (!report.changes.empty() && (place == report.events.end() || place->code != event::value_change))
    report.events.insert(place, {std::string(event::value_change), "", "", ""});
  std::vector<std::string> paths(std::begin(forced), std::end(forced));
  for (const Change &change : report.changes)
    if (std::ranges::find(paths, change.path) == paths.end()) paths.push_back(change.path);
  report.values = read_values(store, paths).values;
  return report;
}

void add_values(pugi::xml_node parent, std::span<const request::Value> values) {
  static const std::string hidden; // the standard has passwords read as empty
  add_array(parent, "ParameterList", "cwmp:ParameterValueStruct", [values](pugi::xml_node list) {
    for (const request::Value &value : values) {
      pugi::xml_node one = list.append_child("ParameterValueStruct");
      add(one, "Name", value.path);
      const std::string &shown = is_secret(value.path) ? hidden : value.text;
      add(one, "Value", wire_value(value.type, shown)).append_attribute("xsi:type") =
          wire_type(value.type).c_str();
    }
  });
}

Outgoing inform(Store &store, const Report &report, const std::string &id) {
  constexpr std::size_t longest_identity = 64;
  Outgoing message(cwmp_1_2, id);
  pugi::xml_node call = message.call("Inform");
  pugi::xml_node device = call.append_child("DeviceId");
  const std::pair<const char *, const char *> identity[] = {{"Manufacturer", parameter::manufacturer},
                                                            {"OUI", parameter::manufacturer_oui},
                                                            {"ProductClass", parameter::product_class},
                                                            {"SerialNumber", parameter::serial_number}};
  for (const auto &[name, path] : identity)
    add(device, name, cut(xml_text(read_value(store, path)), longest_identity));
  add_array(call, "Event", "cwmp:EventStruct", [&report](pugi::xml_node list) {
    for (const Event &event : report.events) {
      pugi::xml_node one = list.append_child("EventStruct");
      add(one, "EventCode", event.code);
      add(one, "CommandKey", event.command_key);
    }
  });
  add(call, "MaxEnvelopes", "1");
  add(call, "CurrentTime", local_time(std::time(nullptr)));
  add(call, "RetryCount", std::to_string(report.retries));
  add_values(call, report.values);
  return message;
}

void acknowledge(Transaction &change, const Report &report, const std::string &url) {
  std::vector<Event> delivered = report.events;
  std::erase_if(delivered, is_of_transfer);
  std::erase_if(delivered, [](const Event &event) { return event.record.empty(); });
  acknowledge(change, delivered);
  acknowledge(change, report.changes);
  // A value that changed after the event was settled is told here, but its event is still due.
  std::vector<request::Value> settled = report.values;
  std::erase_if(settled, [&](const request::Value &value) {
    return is_known(change, value.path) &&
           std::ranges::find(report.changes, value.path, &Change::path) == report.changes.end();
  });
  remember_values(change, settled);
  if (std::ranges::find(report.events, event::bootstrap, &Event::code) != report.events.end())
    change.put(stored::bootstrapped_url, url);
}

} // namespace kova::agent
