// Notification of parameters: what the ACS wants to hear of, the values that it knows, and what has changed
// since.
#pragma once

#include "agent/store.hpp"
#include "request/request.hpp"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kova::agent {

enum class Notification { off, passive, active };

struct Attributes {
  Notification notification = Notification::off;
  std::vector<std::string> access_list; // empty: the ACS alone
};

Attributes attributes_of(const Transaction &store, const std::string &path);
// Some parameters are always reported at once; their notification cannot be changed.
bool is_forced_active(std::string_view path);
void set_attributes(Transaction &change, const std::string &path, const Attributes &attributes);

// Reads values as the agent reports them: the connection request URL is that of this agent's own listener.
request::Reading read_values(Store &store, std::span<const std::string> paths);
std::string read_value(Store &store, const std::string &path); // "" when the device cannot tell it

// Compares the parameters to be reported with the values that the ACS knows, and notes what has changed.
void watch_values(Store &store);
// Does the ACS know a value of this parameter?
bool is_known(const Transaction &store, const std::string &path);
// The ACS knows these values: it was told, has set them itself, or asks for notification from now on.
void remember_values(Transaction &change, std::span<const request::Value> values);
void remember_values(Store &store, std::span<const std::string> paths);

// Paths of what has changed and was not reported; acknowledging leaves what has changed again.
struct Change {
  std::string path, occurrence;
};
std::vector<Change> pending_changes(const Transaction &store);
void acknowledge(Transaction &change, std::span<const Change> changes);
bool has_active_change(const Transaction &store);

} // namespace kova::agent
