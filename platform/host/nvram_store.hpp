// The key/value store of a device: one LMDB file that all its processes share.
#pragma once

#include <lmdb.h>

#include <array>
#include <cstddef>
#include <ctime>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace kova::host {

// The section number stands before the key's text, which keeps the sections apart and in order.
class StoredKey {
public:
  StoredKey(int section, std::string_view key);
  // A key needs a text, and LMDB's keys are limited.
  [[nodiscard]] bool storable() const { return size_ > section_size && size_ <= bytes_.size(); }
  [[nodiscard]] MDB_val view() { return {size_, bytes_.data()}; }

  static int section_of(const MDB_val &stored);
  static std::string_view key_of(const MDB_val &stored);

private:
  static constexpr std::size_t section_size = 4;
  std::array<unsigned char, 511> bytes_;
  std::size_t size_;
};

// What an answer of the store means, for a person.
const char *reason_text(int answer);

// This process's view of the store. Follows $KOVA_DEVICE, survives fork() and the store's removal.
class NvramStore {
public:
  static NvramStore &of_process();

  // Both run use(transaction, database) and answer 0 or what failed, an LMDB or a system error code. A reading sees
  // one state of the store whatever others write; a writing is kept as a whole when `use` answers 0, else not at all.
  // MDB_NOTFOUND is also the answer of a reading when there is no store.
  template <class Use>
  int reading(Use use) {
    const std::lock_guard one_at_a_time(mutex_);
    if (const int failed = begin_read(); failed != 0) return failed;
    const std::unique_ptr<MDB_txn, decltype(&mdb_txn_reset)> snapshot(reader_, mdb_txn_reset);
    return use(snapshot.get(), database_);
  }

  template <class Use>
  int writing(Use use) {
    const std::lock_guard one_at_a_time(mutex_);
    MDB_txn *begun = nullptr;
    if (const int failed = begin_write(&begun); failed != 0) return failed;
    std::unique_ptr<MDB_txn, decltype(&mdb_txn_abort)> change(begun, mdb_txn_abort);
    if (const int failed = use(change.get(), database_); failed != 0) return failed;
    return mdb_txn_commit(change.release());
  }

private:
  enum class Access { read, write };

  NvramStore();
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
