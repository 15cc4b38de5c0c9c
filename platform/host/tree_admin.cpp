#include "platform/host/tree_admin.hpp"

#include "platform/host/tree_file.hpp"

#include <algorithm>
#include <stdexcept>

namespace kova::host {

namespace {

using Leaves = std::vector<std::pair<std::string, std::string>>;

bool is_element(const pugi::xml_node &node) {
  return node.type() == pugi::node_element;
}

void collect(const pugi::xml_node &node, Leaves &leaves) {
  if (is_element(node) && !has_children(node)) leaves.emplace_back(node.path(), leaf_text(node));
  for (const pugi::xml_node &child : node.children())
    if (is_element(child)) collect(child, leaves);
}

} // namespace

Leaves tree_leaves(const std::string &prefix) {
  pugi::xml_document tree;
  load_tree(tree, tree_file());
  Leaves leaves;
  const bool whole = without_leading_slash(prefix).empty();
  collect(whole ? pugi::xml_node(tree) : find_node(tree, prefix), leaves);
  return leaves;
}

void tree_replace(const std::string &xml) {
  pugi::xml_document tree;
  parse_tree(tree, xml, "the new configuration tree");
  if (std::ranges::count_if(tree.begin(), tree.end(), is_element) != 1)
    throw std::runtime_error("the new configuration tree has not exactly one root");
  const std::filesystem::path file = tree_file();
  const TreeLock lock(file);
  save_tree(tree, file);
}

} // namespace kova::host
