#include "platform/host/nvram_admin.hpp"

#include "platform/host/device_dir.hpp"
#include "platform/host/radio.hpp"
#include "platform/host/store.hpp"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace kova::host {

namespace {

[[noreturn]] void fail(const std::string &what, int reason) {
  throw std::runtime_error("cannot " + what + " the key/value store in " + store_dir().string() + ": " +
                           reason_text(reason));
}

StoredKey checked_key(int section, const std::string &name) {
  const StoredKey key = StoredKey::setting(section, name);
  if (!key.storable()) throw std::runtime_error("\"" + name + "\" cannot be a key: it is empty or too long");
  return key;
}

// Those of the radio, each at its place unless a stored value holds.
void add_readings(std::vector<NvramEntry> &entries, const Transaction &snapshot) {
  const auto place = [](const NvramEntry &entry) {
    return std::pair(entry.section, std::string_view(entry.key));
  };
  for (NvramEntry &reading : radio_readings(snapshot)) {
    const auto at = std::ranges::lower_bound(entries, place(reading), {}, place);
    if (at == entries.end() || place(*at) != place(reading)) entries.insert(at, std::move(reading));
  }
}

} // namespace

std::vector<NvramEntry> nvram_entries(std::optional<int> section) {
  std::vector<NvramEntry> entries;
  const int failed = Store::of_process().reading([&](const Transaction &snapshot) {
    const auto add = [&](MDB_cursor *, std::string_view key, std::string_view value) {
      entries.push_back(
          {StoredKey::section_of(key), std::string(StoredKey::name_of(key)), std::string(value)});
      return 0;
    };
    const int read = section ? snapshot.each(StoredKey::setting(*section, "").text(), add)
                             : snapshot.each(StoredKey::any_setting, add);
    if (read == 0 && section.value_or(runtime_section) == runtime_section) add_readings(entries, snapshot);
    return read;
  });
  if (failed != 0 && failed != MDB_NOTFOUND) fail("read", failed);
  return entries;
}

std::optional<std::string> nvram_find(int section, const std::string &key) {
  if (!StoredKey::setting(section, key).storable()) return {};
  std::optional<std::string> result;
  const int failed = Store::of_process().reading([&](const Transaction &snapshot) {
    return use_setting(snapshot, section, key, [&](std::string_view value) { result = value; });
  });
  if (failed != 0 && failed != MDB_NOTFOUND) fail("read", failed);
  return result;
}

void nvram_store(std::span<const NvramEntry> entries) {
  const int failed = Store::of_process().writing([&](const Transaction &change) {
    for (const NvramEntry &entry : entries)
      if (const int refused = change.put(checked_key(entry.section, entry.key), entry.value); refused != 0)
        return refused;
    return 0;
  });
  if (failed != 0) fail("write", failed);
}

bool nvram_remove(int section, const std::string &key) {
  if (!nvram_find(section, key)) return false; // nothing is created to remove from
  const int failed = Store::of_process().writing(
      [&](const Transaction &change) { return change.remove(StoredKey::setting(section, key)); });
  if (failed != 0 && failed != MDB_NOTFOUND) fail("write", failed);
  return failed == 0;
}

std::size_t store_version() {
  std::size_t version = 0;
  const int failed = Store::of_process().reading([&](const Transaction &snapshot) {
    version = snapshot.version();
    return 0;
  });
  if (failed != 0 && failed != MDB_NOTFOUND) fail("read", failed);
  return version;
}

void nvram_clear_section(int section) {
  const int failed = Store::of_process().writing(
      [&](const Transaction &change) { return change.remove_all(StoredKey::setting(section, "").text()); });
  if (failed != 0) fail("write", failed);
}

} // namespace kova::host
