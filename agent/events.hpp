// What is to be reported in an Inform, kept until the ACS has acknowledged it.
#pragma once

#include "agent/store.hpp"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kova::agent {

namespace event {
constexpr std::string_view bootstrap = "0 BOOTSTRAP", boot = "1 BOOT", periodic = "2 PERIODIC",
                           scheduled = "3 SCHEDULED", value_change = "4 VALUE CHANGE",
                           connection_request = "6 CONNECTION REQUEST",
                           transfer_complete = "7 TRANSFER COMPLETE",
                           diagnostics_complete = "8 DIAGNOSTICS COMPLETE", m_reboot = "M Reboot",
                           m_schedule_inform = "M ScheduleInform", m_download = "M Download",
                           m_upload = "M Upload";
} // namespace event

struct Event {
  std::string code, command_key;
  std::string record, occurrence; // where the store keeps it, and which time it happened
};

// Of a single event there is one record however often it happens; of a multiple event ("M ...") one for each
// time. A bootstrap makes the other events void.
void add_event(Transaction &change, std::string_view code, const std::string &command_key = "");
// In the order of an Inform.
std::vector<Event> pending_events(const Transaction &store);
// What has happened again in the meantime stays.
void acknowledge(Transaction &change, std::span<const Event> events);

void erase_event(Transaction &change, std::string_view single_event);

// An event that a person may ask for: it has one of the codes above and needs no command key.
bool can_be_asked_for(std::string_view code);

} // namespace kova::agent
