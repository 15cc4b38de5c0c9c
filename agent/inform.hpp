// The Inform, with which every session begins.
#pragma once

#include "agent/attributes.hpp"
#include "agent/events.hpp"
#include "agent/soap.hpp"
#include "agent/transfers.hpp"

#include <string>
#include <vector>

namespace kova::agent {

// What a session reports: as it was when the session began. What happens later belongs to the next one.
struct Report {
  std::vector<Event> events;
  std::vector<Change> changes;
  std::vector<Transfer> transfers; // that are finished
  std::vector<request::Value> values;
  unsigned retries = 0;

  std::vector<std::string> event_codes() const;
};

Report pending_report(Store &store);
Outgoing inform(Store &store, const Report &report, const std::string &id);
// The ACS has answered the Inform. Events of transfers wait for the answer to the TransferComplete.
void acknowledge(Transaction &change, const Report &report, const std::string &url);

// A list of parameters with their values, as it stands in an Inform and in an answer.
void add_values(pugi::xml_node parent, std::span<const request::Value> values);

} // namespace kova::agent
