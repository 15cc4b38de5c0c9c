#include "agent/events.hpp"

#include <algorithm>
#include <iterator>

namespace kova::agent {
namespace {

constexpr std::string_view events = "event/";

bool is_multiple(std::string_view code) {
  return code.starts_with("M ");
}

} // namespace

void add_event(Transaction &change, std::string_view code, const std::string &command_key) {
  if (code == event::bootstrap) change.erase_all(events);
  const std::string occurrence = change.serial();
  std::string record = std::string(events) + std::string(code);
  if (is_multiple(code)) record += "/" + occurrence;
  change.put(record, occurrence + command_key);
}

std::vector<Event> pending_events(const Transaction &store) {
  constexpr std::size_t serial_length = 10, most = 60; // of the 64 that an Inform may carry
  std::vector<Event> found;
  for (const auto &[record, value] : store.entries(events)) {
    const std::string_view name = std::string_view(record).substr(events.size());
    found.push_back({std::string(name.substr(0, name.find('/'))), value.substr(serial_length), record,
                     value.substr(0, serial_length)});
    if (found.size() == most) break;
  }
  return found;
}

void acknowledge(Transaction &change, std::span<const Event> reported) {
  for (const Event &event : reported)
    if (const auto now = change.get(event.record); now && now->starts_with(event.occurrence))
      change.erase(event.record);
}

void erase_event(Transaction &change, std::string_view single_event) {
  change.erase(std::string(events) + std::string(single_event));
}

bool can_be_asked_for(std::string_view code) {
  constexpr std::string_view codes[] = {
      event::bootstrap,           event::boot,         event::periodic,
      event::scheduled,           event::value_change, event::connection_request,
      event::diagnostics_complete};
  return std::ranges::find(codes, code) != std::end(codes);
}

} // namespace kova::agent
