#include "kovactl/stores.hpp"

#include "platform/host/nvram_admin.hpp"
#include "platform/host/tree_admin.hpp"
#include "platform/ucfg.h"

#include <stdexcept>
#include <vector>

namespace kova::ctl {
namespace {

using Leaf = std::pair<std::string, std::string>;

void show(const Output &output, const std::vector<host::NvramEntry> &entries) {
  Table table;
  Json array = Json::array();
  for (const auto &[section, key, value] : entries) {
    table.push_back({{std::to_string(section), Style::Faint}, {key}, {value, Style::Bold}});
    array.push_back({{"section", section}, {"key", key}, {"value", value}});
  }
  output.json() ? output.print(array) : output.print(table);
}

void show(const Output &output, const std::vector<Leaf> &leaves) {
  Table table;
  Json array = Json::array();
  for (const auto &[path, value] : leaves) {
    table.push_back({{path}, {value, Style::Bold}});
    array.push_back({{"path", path}, {"value", value}});
  }
  output.json() ? output.print(array) : output.print(table);
}

// What to say of a key that a section does not have: where else there is one.
std::string absence(int section, const std::string &key) {
  std::string text = "there is no \"" + key + "\" in section " + std::to_string(section);
  for (const host::NvramEntry &entry : host::nvram_entries())
    if (entry.key == key) return text + "; section " + std::to_string(entry.section) + " has one";
  return text;
}

// The tree takes paths with and without the leading "/"; its listing has it.
std::optional<std::string> find_leaf(const std::string &path) {
  const std::string full = path.starts_with('/') ? path : "/" + path;
  for (const auto &[leaf, value] : host::tree_leaves(full))
    if (leaf == full) return value;
  return {};
}

class OpenTree {
public:
  OpenTree() {
    if (init_ucfg_ex() != 0) throw std::runtime_error("the configuration tree cannot be opened");
  }
  OpenTree(const OpenTree &) = delete;
  OpenTree &operator=(const OpenTree &) = delete;
  ~OpenTree() { deinit_ucfg_ex(keep_ ? 1 : 0); }

  bool write(const Assignment &leaf) { return write_ucfg_xml(0, leaf.path.c_str(), leaf.value.c_str()) == 0; }
  void keep() { keep_ = true; }

private:
  bool keep_ = false;
};

} // namespace

ExitStatus nvram_get(const Output &output, int section, std::span<const std::string> keys) {
  std::vector<host::NvramEntry> entries;
  for (const std::string &key : keys) {
    const auto value = host::nvram_find(section, key);
    if (!value) return output.failure(absence(section, key));
    entries.push_back({section, key, *value});
  }
  show(output, entries);
  return Success;
}

ExitStatus nvram_set(const Output &output, int section, std::span<const Assignment> values) {
  std::vector<host::NvramEntry> entries;
  for (const auto &[key, value] : values)
    entries.push_back({section, key, value});
  host::nvram_store(entries);
  show(output, entries);
  return Success;
}

ExitStatus nvram_unset(const Output &output, int section, std::span<const std::string> keys) {
  for (const std::string &key : keys)
    if (!host::nvram_find(section, key)) return output.failure(absence(section, key));
  for (const std::string &key : keys)
    host::nvram_remove(section, key);
  if (output.json()) output.print(Json{{"removed", keys}});
  return Success;
}

ExitStatus nvram_list(const Output &output, std::optional<int> section, const std::string &prefix) {
  std::vector<host::NvramEntry> entries = host::nvram_entries(section);
  std::erase_if(entries, [&](const host::NvramEntry &entry) { return !entry.key.starts_with(prefix); });
  show(output, entries);
  return Success;
}

ExitStatus tree_get(const Output &output, std::span<const std::string> paths) {
  std::vector<Leaf> leaves;
  for (const std::string &path : paths) {
    const auto value = find_leaf(path);
    if (!value) return output.failure("there is no leaf \"" + path + "\" in the tree");
    leaves.emplace_back(path, *value);
  }
  show(output, leaves);
  return Success;
}

ExitStatus tree_set(const Output &output, std::span<const Assignment> values) {
  {
    OpenTree tree;
    for (const Assignment &leaf : values)
      if (!tree.write(leaf)) return output.failure("\"" + leaf.path + "\" could not be stored in the tree");
    tree.keep();
  }
  std::vector<std::string> paths;
  for (const Assignment &leaf : values)
    paths.push_back(leaf.path);
  return tree_get(output, paths);
}

ExitStatus tree_list(const Output &output, const std::string &prefix) {
  show(output, host::tree_leaves(prefix));
  return Success;
}

} // namespace kova::ctl
