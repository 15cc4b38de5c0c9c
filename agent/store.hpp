// What of the agent must last: one LMDB file for each management instance, shared by the agent and its tasks.
// Every change is a transaction: a process that is killed leaves all of it or nothing.
#pragma once

#include <lmdb.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kova::agent {

// One reading or change of the store. Failures throw std::runtime_error.
class Transaction {
public:
  std::optional<std::string> get(std::string_view key) const;
  // Of all keys that begin so, in order.
  std::vector<std::pair<std::string, std::string>> entries(std::string_view prefix) const;
  void put(std::string_view key, std::string_view value);
  void erase(std::string_view key);
  void erase_all(std::string_view prefix);
  // A number that no other change has been given: ten digits, so that its texts sort.
  std::string serial();

private:
  friend class Store;
  Transaction(MDB_txn *transaction, MDB_dbi database) : transaction_(transaction), database_(database) {}
  MDB_txn *transaction_;
  MDB_dbi database_;
};

class Store {
public:
  explicit Store(const std::filesystem::path &file);
  ~Store();
  Store(const Store &) = delete;
  Store &operator=(const Store &) = delete;

  template <typename Use>
  auto read(Use use) {
    Running running(environment_, MDB_RDONLY);
    const Transaction transaction(running.transaction, database_);
    return use(transaction);
  }
  template <typename Use>
  void change(Use use) {
    Running running(environment_, 0);
    Transaction transaction(running.transaction, database_);
    use(transaction);
    running.commit();
  }
  std::optional<std::string> get(std::string_view key) {
    return read([key](const Transaction &transaction) { return transaction.get(key); });
  }

private:
  struct Running {
    Running(MDB_env *environment, unsigned flags);
    ~Running();
    Running(const Running &) = delete;
    Running &operator=(const Running &) = delete;
    void commit();
    MDB_txn *transaction = nullptr;
  };

  MDB_env *environment_ = nullptr;
  MDB_dbi database_ = 0;
};

// That of this process's device and management instance. It is emptied when the device has gone back to
// factory settings.
std::filesystem::path store_file();
void begin_anew_after_reset(Store &store);

} // namespace kova::agent
