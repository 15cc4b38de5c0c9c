// tree: the configuration tree, behind the back of the accessors and their rules.
#include "kovactl/agent.hpp"
#include "kovactl/command.hpp"
#include "kovactl/commands.hpp"
#include "kovactl/request.hpp"
#include "platform/host/tree_admin.hpp"
#include "platform/ucfg.h"

#include <algorithm>
#include <stdexcept>

namespace kova::ctl {
namespace {

using Leaf = std::pair<std::string, std::string>;

struct TreeOptions {
  std::vector<std::string> words; // paths, or PATH=VALUE
};
struct TreeListOptions {
  std::string prefix;
};

void show(const Output &output, const std::vector<Leaf> &leaves) {
  Table table;
  Json array = Json::array();
  for (const auto &[path, value] : leaves) {
    table.push_back({{path}, {value, Style::Bold}});
    array.push_back({{"path", path}, {"value", value}});
  }
  output.json() ? output.print(array) : output.print(table);
}

ExitStatus show_leaves(const Output &output, const std::vector<std::string> &paths) {
  const std::vector<Leaf> all = host::tree_leaves(); // one state of the tree
  std::vector<Leaf> leaves;
  for (const std::string &path : paths) {
    const std::string full =
        path.starts_with('/') ? path : "/" + path; // it takes both; its listing has the "/"
    const auto leaf = std::ranges::find(all, full, &Leaf::first);
    if (leaf == all.end()) return output.failure("there is no leaf \"" + path + "\" in the tree");
    leaves.emplace_back(path, leaf->second);
  }
  show(output, leaves);
  return Success;
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

ExitStatus get(const Output &output, const TreeOptions &options) {
  boot(output);
  const device::Turn turn(device::Turn::Kind::reading);
  return show_leaves(output, options.words);
}

ExitStatus set(const Output &output, const TreeOptions &options) {
  boot(output);
  const device::Turn turn(device::Turn::Kind::changing);
  std::vector<std::string> paths;
  {
    OpenTree tree;
    for (const std::string &text : options.words) {
      const Assignment leaf = as_assignment(text);
      if (!tree.write(leaf)) return output.failure("\"" + leaf.path + "\" could not be stored in the tree");
      paths.push_back(leaf.path);
    }
    tree.keep();
  }
  return show_leaves(output, paths);
}

ExitStatus list(const Output &output, const TreeListOptions &options) {
  boot(output);
  const device::Turn turn(device::Turn::Kind::reading);
  show(output, host::tree_leaves(options.prefix));
  return Success;
}

// One level further.
std::vector<std::string> complete_path(const std::string &word) {
  std::vector<std::string> found;
  if (!has_device()) return found;
  for (const auto &[path, text] : host::tree_leaves()) {
    if (!path.starts_with(word)) continue;
    const size_t slash = path.find('/', std::max(word.size(), size_t{1}));
    const std::string next = path.substr(0, slash == std::string::npos ? slash : slash + 1);
    if (found.empty() || found.back() != next) found.push_back(next);
  }
  return found;
}

std::vector<std::string> complete_leaf(const std::string &word) {
  std::vector<std::string> found = complete_path(word);
  for (std::string &path : found)
    if (!path.ends_with('/')) path += "=";
  return found;
}

} // namespace

void add_tree(Commands &commands) {
  Commands tree = commands.group("tree", "The configuration tree");
  auto [getting, paths] = tree.add<TreeOptions>("get", "Show leaves", get);
  getting.words("PATH", &paths.words, "As in /tarn/...").required();
  auto [setting, leaves] = tree.add<TreeOptions>("set", "Store leaves as they are, without any rule", set);
  setting.words("PATH=VALUE", &leaves.words).required().check(assignment_rule);
  auto [listing, options] = tree.add<TreeListOptions>("list", "Show all leaves", list);
  listing.words("PREFIX", &options.prefix, "Only the leaves at or below this path");
  getting.complete(complete_path);
  setting.complete(complete_leaf);
  listing.complete(complete_path);
}

} // namespace kova::ctl
