#include "agent/store.hpp"

#include "device/paths.hpp"
#include "platform/host/nvram_admin.hpp"

#include <kova/frame.h>

#include <algorithm>
#include <cstdio>
#include <random>
#include <stdexcept>

namespace kova::agent {
namespace {

constexpr std::size_t map_size = std::size_t{16}
                                 << 20; // an upper bound; the file is as large as its contents
constexpr const char *serial_key = "serial", *device_key = "device";

int checked(int answer) {
  if (answer != 0 && answer != MDB_NOTFOUND)
    throw std::runtime_error(std::string("the agent's store: ") + mdb_strerror(answer));
  return answer;
}

MDB_val view(std::string_view text) {
  return {text.size(), const_cast<char *>(text.data())};
}

std::string text_of(const MDB_val &value) {
  return {static_cast<const char *>(value.mv_data), value.mv_size};
}

} // namespace

std::optional<std::string> Transaction::get(std::string_view key) const {
  MDB_val name = view(key), value{};
  if (checked(mdb_get(transaction_, database_, &name, &value)) != 0) return std::nullopt;
  return text_of(value);
}

std::vector<std::pair<std::string, std::string>> Transaction::entries(std::string_view prefix) const {
  std::vector<std::pair<std::string, std::string>> found;
  MDB_cursor *cursor = nullptr;
  checked(mdb_cursor_open(transaction_, database_, &cursor));
  MDB_val name = view(prefix), value{};
  for (int at = mdb_cursor_get(cursor, &name, &value, prefix.empty() ? MDB_FIRST : MDB_SET_RANGE);
       at == 0 && text_of(name).starts_with(prefix); at = mdb_cursor_get(cursor, &name, &value, MDB_NEXT))
    found.emplace_back(text_of(name), text_of(value));
  mdb_cursor_close(cursor);
  return found;
}

void Transaction::put(std::string_view key, std::string_view value) {
  MDB_val name = view(key), content = view(value);
  checked(mdb_put(transaction_, database_, &name, &content, 0));
}

void Transaction::erase(std::string_view key) {
  MDB_val name = view(key);
  checked(mdb_del(transaction_, database_, &name, nullptr));
}

void Transaction::erase_all(std::string_view prefix) {
  for (const auto &[key, value] : entries(prefix))
    erase(key);
}

std::string Transaction::serial() {
  char text[24];
  std::snprintf(text, sizeof text, "%010lu", std::stoul(get(serial_key).value_or("0")) + 1);
  put(serial_key, text);
  return text;
}

Store::Store(const std::filesystem::path &file) {
  checked(mdb_env_create(&environment_));
  try {
    checked(mdb_env_set_mapsize(environment_, map_size));
    // As for the device's own store: the crash of a process loses nothing.
    checked(mdb_env_open(environment_, file.c_str(), MDB_NOSUBDIR | MDB_NOTLS | MDB_NOMETASYNC, 0644));
    checked(mdb_reader_check(environment_, nullptr));
    Running opening(environment_, 0);
    checked(mdb_dbi_open(opening.transaction, nullptr, 0, &database_));
    opening.commit();
  } catch (...) {
    mdb_env_close(environment_);
    throw;
  }
}

Store::~Store() {
  mdb_env_close(environment_);
}

Store::Running::Running(MDB_env *environment, unsigned flags) {
  checked(mdb_txn_begin(environment, nullptr, flags, &transaction));
}

Store::Running::~Running() {
  if (transaction != nullptr) mdb_txn_abort(transaction);
}

void Store::Running::commit() {
  checked(mdb_txn_commit(std::exchange(transaction, nullptr)));
}

std::filesystem::path store_file() {
  return host::device_dir() / "store" / (gSecondaryInstance != 0 ? "cwmp-secondary.mdb" : "cwmp.mdb");
}

// The device and the store bear the same mark. A reset takes the device's away.
void begin_anew_after_reset(Store &store) {
  const std::string key = gSecondaryInstance != 0 ? "S_CWMP_STORE" : "CWMP_STORE";
  const auto of_device = host::nvram_find(host::configuration_section, key);
  if (of_device && store.get(device_key) == of_device) return;
  const std::string mark = std::to_string(std::random_device{}());
  store.change([&mark](Transaction &change) {
    change.erase_all("");
    change.put(device_key, mark);
  });
  const host::NvramEntry entry{host::configuration_section, key, mark};
  host::nvram_store(std::span(&entry, 1));
}

} // namespace kova::agent
