#include "platform/host/nvram_admin.hpp"

#include "platform/host/device_dir.hpp"
#include "platform/host/nvram_store.hpp"

#include <memory>
#include <stdexcept>

namespace kova::host {

namespace {

using Cursor = std::unique_ptr<MDB_cursor, decltype(&mdb_cursor_close)>;

[[noreturn]] void fail(const std::string &what, int reason) {
  throw std::runtime_error("cannot " + what + " the key/value store in " + store_dir().string() + ": " +
                           reason_text(reason));
}

StoredKey checked_key(int section, const std::string &key) {
  StoredKey stored(section, key);
  if (!stored.storable())
    throw std::runtime_error("\"" + key + "\" cannot be a key: it is empty or too long");
  return stored;
}

std::string text(const MDB_val &value) {
  return {static_cast<const char *>(value.mv_data), value.mv_size};
}

// Calls use(cursor, key, value) for every entry of the section, or of all, until it answers another value than 0.
template <class Use>
int walk(MDB_txn *transaction, MDB_dbi database, std::optional<int> section, Use use) {
  MDB_cursor *opened = nullptr;
  if (const int failed = mdb_cursor_open(transaction, database, &opened); failed != 0) return failed;
  const Cursor cursor(opened, mdb_cursor_close);
  StoredKey start(section.value_or(0), "");
  MDB_val key = start.view();
  MDB_val value;
  int result = mdb_cursor_get(opened, &key, &value, section ? MDB_SET_RANGE : MDB_FIRST);
  for (; result == 0; result = mdb_cursor_get(opened, &key, &value, MDB_NEXT)) {
    if (section && StoredKey::section_of(key) != *section) return 0;
    if (const int failed = use(opened, key, value); failed != 0) return failed;
  }
  return result == MDB_NOTFOUND ? 0 : result;
}

} // namespace

std::vector<NvramEntry> nvram_entries(std::optional<int> section) {
  std::vector<NvramEntry> entries;
  const int failed = NvramStore::of_process().reading([&](MDB_txn *snapshot, MDB_dbi database) {
    return walk(snapshot, database, section, [&](MDB_cursor *, const MDB_val &key, const MDB_val &value) {
      entries.push_back({StoredKey::section_of(key), std::string(StoredKey::key_of(key)), text(value)});
      return 0;
    });
  });
  if (failed != 0 && failed != MDB_NOTFOUND) fail("read", failed);
  return entries;
}

std::optional<std::string> nvram_find(int section, const std::string &key) {
  StoredKey stored(section, key);
  if (!stored.storable()) return {};
  std::optional<std::string> result;
  const int failed = NvramStore::of_process().reading([&](MDB_txn *snapshot, MDB_dbi database) {
    MDB_val name = stored.view();
    MDB_val value;
    const int answer = mdb_get(snapshot, database, &name, &value);
    if (answer == 0) result = text(value);
    return answer;
  });
  if (failed != 0 && failed != MDB_NOTFOUND) fail("read", failed);
  return result;
}

void nvram_store(std::span<const NvramEntry> entries) {
  const int failed = NvramStore::of_process().writing([&](MDB_txn *change, MDB_dbi database) {
    for (const NvramEntry &entry : entries) {
      StoredKey stored = checked_key(entry.section, entry.key);
      MDB_val name = stored.view();
      MDB_val value{entry.value.size(), const_cast<char *>(entry.value.data())};
      if (const int refused = mdb_put(change, database, &name, &value, 0); refused != 0) return refused;
    }
    return 0;
  });
  if (failed != 0) fail("write", failed);
}

bool nvram_remove(int section, const std::string &key) {
  if (!nvram_find(section, key)) return false; // nothing is created to remove from
  StoredKey stored(section, key);
  const int failed = NvramStore::of_process().writing([&](MDB_txn *change, MDB_dbi database) {
    MDB_val name = stored.view();
    return mdb_del(change, database, &name, nullptr);
  });
  if (failed != 0 && failed != MDB_NOTFOUND) fail("write", failed);
  return failed == 0;
}

void nvram_clear_section(int section) {
  const int failed = NvramStore::of_process().writing([&](MDB_txn *change, MDB_dbi database) {
    return walk(change, database, section, [](MDB_cursor *cursor, const MDB_val &, const MDB_val &) {
      return mdb_cursor_del(cursor, 0);
    });
  });
  if (failed != 0) fail("write", failed);
}

} // namespace kova::host
