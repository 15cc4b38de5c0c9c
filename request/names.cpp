// Naming the objects and parameters that there are.
#include "request/paths.hpp"
#include "request/request.hpp"

#include <map>

namespace kova::request {
namespace {

// Objects and parameters below a branch, with the objects on the way; those that are writable.
using Tree = std::map<std::string, bool, std::less<>>;

void add_way(Tree &tree, std::string_view path, size_t below) {
  for (size_t dot = path.find('.', below); dot != std::string_view::npos; dot = path.find('.', dot + 1))
    tree.try_emplace(std::string(path.substr(0, dot + 1)), false);
}

void add_list(Tree &tree, const model::RowList &list, const std::string &branch) {
  const auto add = [&](const std::string &path) {
    if (path.starts_with(branch)) tree[path] = list.writable();
  };
  add_way(tree, list.object(), branch.size());
  add(std::string(list.object()));
  for (int index = 1; list.read(index); ++index) {
    add(list.instance(index));
    add(list.instance(index) + std::string(list.member()));
  }
}

Tree tree_below(const std::string &branch) {
  Tree tree;
  if (!branch.empty() && !branch.ends_with('.')) return tree;
  for (const model::Parameter *parameter : model::branch(branch)) {
    add_way(tree, parameter->path, branch.size());
    tree[std::string(parameter->path)] = parameter->writable();
  }
  for (const model::RowList &list : model::lists())
    if (list.object().starts_with(branch) || branch.starts_with(list.object())) add_list(tree, list, branch);
  return tree;
}

bool is_next_level(std::string_view path, size_t branch) {
  const size_t dot = path.find('.', branch);
  return path.size() > branch && (dot == std::string_view::npos || dot + 1 == path.size());
}

std::optional<Name> named_parameter(const std::string &path) {
  if (const model::Parameter *parameter = model::find(path)) return Name{path, parameter->writable()};
  const auto row = model::row_at(path);
  if (row && !row->is_branch && row->list->read(row->index)) return Name{path, row->list->writable()};
  return std::nullopt;
}

bool writable_object(const std::string &path) {
  if (const model::RowList *list = model::find_list(path)) return list->writable();
  const auto row = model::row_at(path);
  return row && row->list->writable();
}

} // namespace

Names get_names(const std::string &path, bool next_level) {
  if (const auto parameter = named_parameter(path)) {
    if (!next_level) return {{*parameter}, std::nullopt};
    return {{}, Fault{path, FaultCode::InvalidArguments, "a parameter has no next level"}};
  }
  Tree tree = tree_below(path);
  if (tree.empty()) return {{}, unknown_path(path, likely_path(path))};
  if (!path.empty()) tree[path] = writable_object(path);
  Names found;
  for (const auto &[name, writable] : tree)
    if (!next_level || is_next_level(name, path.size())) found.names.push_back({name, writable});
  return found;
}

} // namespace kova::request
