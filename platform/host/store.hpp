// What a device stores: one LMDB file, which all its processes share, holds the settings and the
// configuration tree.
#pragma once

#include <arpa/inet.h>
#include <lmdb.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace kova::host {

// What an entry is stored under. Settings and leaves of the tree have keys of a kind each; the section of a
// setting stands before its name, which keeps the sections apart and in order.
class StoredKey {
public:
  static StoredKey setting(int section, std::string_view name) {
    const std::uint32_t sorted = htonl(static_cast<std::uint32_t>(section) ^ sign_bit);
    StoredKey key(any_setting);
    std::memcpy(key.bytes_.data() + any_setting.size(), &sorted, sizeof sorted);
    key.append(any_setting.size() + sizeof sorted, name);
    return key;
  }
  static StoredKey leaf(std::string_view path) {
    StoredKey key(any_leaf);
    key.append(any_leaf.size(), path);
    return key;
  }

  // A key needs a name, and LMDB's keys are limited.
  [[nodiscard]] bool storable() const { return size_ > head_size_ && size_ <= bytes_.size(); }
  [[nodiscard]] std::string_view text() const { return {bytes_.data(), size_}; }

  static constexpr std::string_view any_setting = "s", any_leaf = "t";
  static int section_of(std::string_view stored_setting);
  static std::string_view name_of(std::string_view stored_setting) {
    return stored_setting.substr(any_setting.size() + sizeof(std::uint32_t));
  }
  static std::string_view path_of(std::string_view stored_leaf) {
    return stored_leaf.substr(any_leaf.size());
  }

private:
  static constexpr std::uint32_t sign_bit =
      0x80000000U; // flipped, so that negative numbers sort before positive ones
  explicit StoredKey(std::string_view kind) { bytes_[0] = kind.front(); }
  void append(std::size_t head_size, std::string_view name) {
    head_size_ = head_size;
    size_ = head_size + name.size();
    std::memcpy(bytes_.data() + head_size, name.data(), std::min(name.size(), bytes_.size() - head_size));
  }

  std::array<char, 511> bytes_;
  std::size_t head_size_ = 0, size_ = 0;
};

// One state of the store, to be read or changed. Each call answers 0 or what failed, an LMDB or a system
// error code; MDB_NOTFOUND: there is no such entry. A text that is handed out is valid as long as the
// transaction.
class Transaction {
public:
  Transaction(MDB_txn *handle, MDB_dbi database) : handle_(handle), database_(database) {}

  int get(const StoredKey &key, std::string_view &value) const {
    MDB_val name = val(key.text());
    MDB_val stored;
    const int answer = mdb_get(handle_, database_, &name, &stored);
    if (answer == 0) value = text(stored);
    return answer;
  }
  // What is there already costs no write: some getters store what they find each time.
  int put(const StoredKey &key, std::string_view value) const {
    if (std::string_view stored; get(key, stored) == 0 && stored == value) return 0;
    MDB_val name = val(key.text());
    MDB_val content = val(value);
    return mdb_put(handle_, database_, &name, &content, 0);
  }
  int remove(const StoredKey &key) const {
    MDB_val name = val(key.text());
    return mdb_del(handle_, database_, &name, nullptr);
  }
  // Calls use(cursor, key, value) for every entry whose key begins so, in the order of their bytes, until it
  // answers another value than 0.
  template <class Use>
  int each(std::string_view prefix, Use use) const {
    MDB_cursor *opened = nullptr;
    if (const int failed = mdb_cursor_open(handle_, database_, &opened); failed != 0) return failed;
    const std::unique_ptr<MDB_cursor, decltype(&mdb_cursor_close)> cursor(opened, mdb_cursor_close);
    MDB_val key = val(prefix);
    MDB_val value;
    int result = mdb_cursor_get(opened, &key, &value, MDB_SET_RANGE);
    for (; result == 0; result = mdb_cursor_get(opened, &key, &value, MDB_NEXT)) {
      if (!text(key).starts_with(prefix)) return 0;
      if (const int failed = use(opened, text(key), text(value)); failed != 0) return failed;
    }
    return result == MDB_NOTFOUND ? 0 : result;
  }
  int remove_all(std::string_view prefix) const {
    return each(prefix,
                [](MDB_cursor *at, std::string_view, std::string_view) { return mdb_cursor_del(at, 0); });
  }
  // Differs from that of any other state.
  std::size_t version() const { return mdb_txn_id(handle_); }

private:
  static MDB_val val(std::string_view text) { return {text.size(), const_cast<char *>(text.data())}; }
  static std::string_view text(const MDB_val &val) {
    return {static_cast<const char *>(val.mv_data), val.mv_size};
  }

  MDB_txn *handle_;
  MDB_dbi database_;
};

// What an answer of the store means, for a person.
const char *reason_text(int answer);

// This process's view of the store. Follows $KOVA_DEVICE, survives fork() and the store's removal.
class Store {
public:
  static Store &of_process();

  // Both run use(transaction) and answer 0 or what failed. A reading sees one state of the store whatever
  // others write; a writing is kept as a whole when `use` answers 0, else not at all. MDB_NOTFOUND is also
  // the answer of a reading when there is no store.
  template <class Use>
  int reading(Use use) {
    const std::lock_guard one_at_a_time(mutex_);
    if (const int failed = begin_read(); failed != 0) return failed;
    const std::unique_ptr<MDB_txn, decltype(&mdb_txn_reset)> snapshot(reader_, mdb_txn_reset);
    return use(Transaction(snapshot.get(), database_));
  }

  template <class Use>
  int writing(Use use) {
    const std::lock_guard one_at_a_time(mutex_);
    MDB_txn *begun = nullptr;
    if (const int failed = begin_write(&begun); failed != 0) return failed;
    std::unique_ptr<MDB_txn, decltype(&mdb_txn_abort)> change(begun, mdb_txn_abort);
    if (const int failed = use(Transaction(change.get(), database_)); failed != 0) return failed;
    return mdb_txn_commit(change.release());
  }

private:
  enum class Access { read, write };

  Store();
  void follow_device(Access access);
  bool removed_from_disk() const;
  bool clock_ticked();
  int begin_read();
  int begin_write(MDB_txn **begun);
  int open(Access access);
  int open_environment(unsigned flags);
  void close();

  std::mutex mutex_;
  MDB_env *environment_ = nullptr;
  MDB_txn *reader_ = nullptr; // reset between readings: beginning anew would cost an allocation and a lock
  MDB_dbi database_ = 0;
  bool writable_ = false;

  bool located_ = false;
  std::string device_variable_; // $KOVA_DEVICE when file_ was determined
  std::filesystem::path file_;
  timespec last_tick_ = {};

  bool forked_ = false;
  struct Inherited {
    MDB_env *environment;
    MDB_txn *reader;
  };
  std::vector<Inherited> inherited_;
};

} // namespace kova::host
