#include "agent/attributes.hpp"

#include "agent/names.hpp"

#include <algorithm>
#include <iterator>
#include <map>

namespace kova::agent {
namespace {

constexpr std::string_view attributes_prefix = "attributes/", known_prefix = "known/",
                           changed_prefix = "changed/";

// As the standard's data model has them.
constexpr std::string_view forced_active[] = {parameter::provisioning_code, parameter::software_version,
                                              parameter::connection_request_url,
                                              parameter::udp_connection_request_address};
constexpr std::string_view active_by_default[] = {parameter::external_ip_address};

bool is_one_of(std::span<const std::string_view> paths, std::string_view path) {
  return std::ranges::find(paths, path) != paths.end();
}

std::string key_of(std::string_view prefix, std::string_view path) {
  return std::string(prefix) + std::string(path);
}

// "2" and the access list, a line each.
std::string as_text(const Attributes &attributes) {
  std::string text = std::to_string(static_cast<int>(attributes.notification));
  for (const std::string &entity : attributes.access_list)
    text += "\n" + entity;
  return text;
}

Attributes from_text(std::string_view text) {
  Attributes attributes{static_cast<Notification>(text[0] - '0'), {}};
  for (std::size_t at = text.find('\n'); at != std::string_view::npos;) {
    const std::size_t next = text.find('\n', at + 1);
    attributes.access_list.emplace_back(text.substr(at + 1, next - at - 1));
    at = next;
  }
  return attributes;
}

std::vector<std::string> watched_paths(const Transaction &store) {
  std::vector<std::string> paths(std::begin(forced_active), std::end(forced_active));
  // The first session finds it out, and reports it.
  if (!store.get(stored::connection_request_url)) std::erase(paths, parameter::connection_request_url);
  for (const std::string_view path : active_by_default)
    if (!store.get(key_of(attributes_prefix, path))) paths.emplace_back(path);
  for (const auto &[record, text] : store.entries(attributes_prefix))
    if (from_text(text).notification != Notification::off &&
        !is_forced_active(record.substr(attributes_prefix.size())))
      paths.push_back(record.substr(attributes_prefix.size()));
  return paths;
}

} // namespace

bool is_forced_active(std::string_view path) {
  return is_one_of(forced_active, path);
}

Attributes attributes_of(const Transaction &store, const std::string &path) {
  Attributes attributes;
  if (const auto text = store.get(key_of(attributes_prefix, path)))
    attributes = from_text(*text);
  else if (is_one_of(active_by_default, path))
    attributes.notification = Notification::active;
  if (is_forced_active(path)) attributes.notification = Notification::active;
  return attributes;
}

void set_attributes(Transaction &change, const std::string &path, const Attributes &attributes) {
  change.put(key_of(attributes_prefix, path), as_text(attributes));
  if (attributes.notification != Notification::off) return;
  change.erase(key_of(known_prefix, path));
  change.erase(key_of(changed_prefix, path));
}

request::Reading read_values(Store &store, std::span<const std::string> paths) {
  request::Reading reading = request::get_values(paths);
  const auto own =
      std::ranges::find(reading.values, parameter::connection_request_url, &request::Value::path);
  if (own != reading.values.end()) own->text = store.get(stored::connection_request_url).value_or("");
  return reading;
}

std::string read_value(Store &store, const std::string &path) {
  const request::Reading reading = read_values(store, std::span(&path, 1));
  return reading.values.empty() ? "" : reading.values.front().text;
}

void watch_values(Store &store) {
  const auto paths = store.read(watched_paths);
  const request::Reading reading = read_values(store, paths);
  const auto differs = [](const Transaction &known, const request::Value &value) {
    return known.get(key_of(known_prefix, value.path)) != value.text;
  };
  const bool any = store.read([&](const Transaction &known) {
    return std::ranges::any_of(reading.values, [&](const auto &value) { return differs(known, value); });
  });
  if (!any) return;
  store.change([&](Transaction &change) {
    for (const request::Value &value : reading.values) {
      if (!differs(change, value)) continue;
      // What was never known is no change: the ACS learns of it as of all others.
      if (change.get(key_of(known_prefix, value.path)))
        change.put(key_of(changed_prefix, value.path), change.serial());
      change.put(key_of(known_prefix, value.path), value.text);
    }
  });
}

bool is_known(const Transaction &store, const std::string &path) {
  return store.get(key_of(known_prefix, path)).has_value();
}

void remember_values(Transaction &change, std::span<const request::Value> values) {
  for (const request::Value &value : values)
    if (attributes_of(change, value.path).notification != Notification::off)
      change.put(key_of(known_prefix, value.path), value.text);
}

void remember_values(Store &store, std::span<const std::string> paths) {
  const request::Reading reading = read_values(store, paths);
  store.change([&reading](Transaction &change) { remember_values(change, reading.values); });
}

std::vector<Change> pending_changes(const Transaction &store) {
  std::vector<Change> changes;
  for (const auto &[record, occurrence] : store.entries(changed_prefix))
    changes.push_back({record.substr(changed_prefix.size()), occurrence});
  return changes;
}

void acknowledge(Transaction &change, std::span<const Change> changes) {
  for (const Change &each : changes)
    if (change.get(key_of(changed_prefix, each.path)) == each.occurrence)
      change.erase(key_of(changed_prefix, each.path));
}

bool has_active_change(const Transaction &store) {
  return std::ranges::any_of(pending_changes(store), [&store](const Change &change) {
    return attributes_of(store, change.path).notification == Notification::active;
  });
}

} // namespace kova::agent
