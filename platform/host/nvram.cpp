// The calls of the key/value store.
#include "platform/nvram.h"

#include "platform/host/nvram_admin.hpp"
#include "platform/host/radio.hpp"
#include "platform/host/store.hpp"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string_view>

using kova::host::Store;
using kova::host::StoredKey;
using kova::host::Transaction;

namespace {

constexpr int found = 1, missing = 0, failure = -1;

// Hands the value to `use` while it is valid.
template <class Use>
int look_up(int section, const char *key, Use use) {
  if (key == nullptr) return failure;
  if (!StoredKey::setting(section, key).storable()) return missing;
  const int result = Store::of_process().reading(
      [&](const Transaction &snapshot) { return kova::host::use_setting(snapshot, section, key, use); });
  if (result == 0) return found;
  if (result == MDB_NOTFOUND) return missing;
  tarn_log_console("nvram: cannot read key \"%s\" of section %d: %s", key, section,
                   kova::host::reason_text(result));
  return failure;
}

unsigned failed_writes = 0;

const char *store_value(int section, const char *key, const char *value) {
  const StoredKey stored = StoredKey::setting(section, key);
  if (*key == '\0') return "the key is empty";
  if (!stored.storable()) return "the key is too long";
  if (value == nullptr) return "no value";
  const int failed =
      Store::of_process().writing([&](const Transaction &change) { return change.put(stored, value); });
  return failed == 0 ? nullptr : kova::host::reason_text(failed);
}

} // namespace

int nvram_bufget_string(int section, const char *key, char *buf, int size) {
  if (buf == nullptr || size <= 0) return failure;
  return look_up(section, key, [&](std::string_view value) {
    const auto length = std::min(value.size(), static_cast<std::size_t>(size) - 1);
    std::memcpy(buf, value.data(), length);
    buf[length] = '\0';
  });
}

char *nvram_bufget(int section, const char *key) {
  char *copy = nullptr;
  const auto copy_out = [&](std::string_view value) {
    copy = static_cast<char *>(std::malloc(value.size() + 1));
    if (copy == nullptr) return;
    std::memcpy(copy, value.data(), value.size());
    copy[value.size()] = '\0';
  };
  if (look_up(section, key, copy_out) != found) copy_out("");
  return copy;
}

int nvram_bufset(int section, const char *key, const char *value) {
  if (key == nullptr) {
    tarn_log_console("nvram: cannot store a value without a key in section %d", section);
    return failure;
  }
  const char *reason = store_value(section, key, value);
  if (reason == nullptr) return 0;
  ++failed_writes;
  tarn_log_console("nvram: cannot store key \"%s\" of section %d: %s", key, section, reason);
  return failure;
}

int tarn_check_nvram_value(int section, const char *key) {
  bool on = false;
  look_up(section, key, [&](std::string_view value) { on = value == "1"; });
  return on ? 1 : 0;
}

unsigned kova::host::nvram_failed_writes() {
  return failed_writes;
}
