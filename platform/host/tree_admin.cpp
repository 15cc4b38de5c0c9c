#include "platform/host/tree_admin.hpp"

#include "platform/host/device_dir.hpp"
#include "platform/host/store.hpp"

#include <algorithm>
#include <stdexcept>

namespace kova::host {

namespace {

[[noreturn]] void fail(const char *what, int reason) {
  throw std::runtime_error(std::string("cannot ") + what + " the configuration tree in " +
                           store_dir().string() + ": " + reason_text(reason));
}

[[noreturn]] void refuse(std::string_view path, const char *why) {
  throw std::runtime_error("\"" + std::string(path) + "\" " + why);
}

std::string_view without_leading_slash(std::string_view path) {
  return path.starts_with('/') ? path.substr(1) : path;
}

bool name_character(char c) {
  const int lower = c | 0x20;
  return (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '-' || c == '.' ||
         c == ':';
}

bool is_path(std::string_view path) {
  const auto belongs = [](char c) { return c == '/' || name_character(c); };
  return !path.empty() && path.front() != '/' && path.back() != '/' && std::ranges::all_of(path, belongs) &&
         path.find("//") == std::string_view::npos;
}

int put(const Transaction &change, const TreeLeaf &leaf) {
  const std::string_view path = without_leading_slash(leaf.first);
  const StoredKey key = StoredKey::leaf(path);
  if (!is_path(path) || !key.storable()) refuse(leaf.first, "is no path of the configuration tree");
  std::string_view text;
  for (std::size_t slash = path.find('/'); slash != std::string_view::npos; slash = path.find('/', slash + 1))
    if (change.get(StoredKey::leaf(path.substr(0, slash)), text) == 0)
      refuse(leaf.first, "leads through a leaf");
  const std::string below = std::string(key.text()) + '/';
  const int failed = change.each(below, [&leaf](MDB_cursor *, std::string_view, std::string_view) -> int {
    refuse(leaf.first, "has leaves below it, it cannot have a text");
  });
  return failed == 0 ? change.put(key, leaf.second) : failed;
}

int put_all(const Transaction &change, std::span<const TreeLeaf> leaves) {
  for (const TreeLeaf &leaf : leaves)
    if (const int failed = put(change, leaf); failed != 0) return failed;
  return 0;
}

} // namespace

std::vector<TreeLeaf> tree_leaves(const std::string &prefix) {
  std::vector<TreeLeaf> leaves;
  const std::string_view top = without_leading_slash(prefix);
  const int failed = Store::of_process().reading([&](const Transaction &snapshot) {
    const auto add = [&leaves](MDB_cursor *, std::string_view key, std::string_view text) {
      leaves.emplace_back("/" + std::string(StoredKey::path_of(key)), text);
      return 0;
    };
    if (top.empty()) return snapshot.each(StoredKey::any_leaf, add);
    std::string_view text;
    if (snapshot.get(StoredKey::leaf(top), text) == 0) leaves.emplace_back("/" + std::string(top), text);
    return snapshot.each(StoredKey::leaf(std::string(top) + '/').text(), add);
  });
  if (failed != 0 && failed != MDB_NOTFOUND) fail("read", failed);
  return leaves;
}

std::optional<std::string> tree_find(std::string_view path) {
  const StoredKey key = StoredKey::leaf(without_leading_slash(path));
  if (!key.storable()) return {};
  std::optional<std::string> result;
  const int failed = Store::of_process().reading([&](const Transaction &snapshot) {
    std::string_view text;
    const int answer = snapshot.get(key, text);
    if (answer == 0) result = text;
    return answer;
  });
  if (failed != 0 && failed != MDB_NOTFOUND) fail("read", failed);
  return result;
}

void tree_store(std::span<const TreeLeaf> leaves) {
  const int failed =
      Store::of_process().writing([leaves](const Transaction &change) { return put_all(change, leaves); });
  if (failed != 0) fail("write", failed);
}

void tree_try(std::span<const TreeLeaf> leaves) {
  constexpr int not_kept = MDB_LAST_ERRCODE + 1; // no code of LMDB or the system
  const int failed = Store::of_process().writing([leaves](const Transaction &change) {
    const int refused = put_all(change, leaves);
    return refused == 0 ? not_kept : refused;
  });
  if (failed != not_kept) fail("write", failed);
}

void tree_clear() {
  const int failed = Store::of_process().writing(
      [](const Transaction &change) { return change.remove_all(StoredKey::any_leaf); });
  if (failed != 0) fail("write", failed);
}

} // namespace kova::host
