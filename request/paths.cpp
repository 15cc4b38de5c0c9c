#include "request/paths.hpp"

#include "request/spelling.hpp"

#include <algorithm>
#include <vector>

namespace kova::request {
namespace {

// The member of the branch that is most like the name, or "".
std::string likely_member(const std::string &branch, std::string_view name) {
  const auto members = continuations(starting_with(branch), branch.size());
  std::vector<std::string> names;
  names.reserve(members.size());
  for (const std::string &member : members)
    names.push_back(
        member.substr(branch.size(), member.size() - branch.size() - (member.ends_with('.') ? 1 : 0)));
  const std::string likely = likely_name(name, names);
  if (likely.empty()) return "";
  return branch + likely + (members.contains(branch + likely) ? "" : ".");
}

} // namespace

std::vector<Listed> starting_with(std::string_view prefix) {
  std::vector<Listed> found;
  for (const model::Parameter *parameter : model::starting_with(prefix))
    found.push_back(
        {parameter->path, parameter->type, parameter->access, parameter->unit, parameter->meaning});
  for (const model::RowList &list : model::lists()) {
    const auto access = list.writable() ? model::Access::ReadWrite : model::Access::ReadOnly;
    if (list.path.starts_with(prefix))
      found.push_back({list.path, model::Type::String, access, "", list.described});
  }
  std::ranges::sort(found, {}, &Listed::path);
  return found;
}

std::set<std::string> continuations(std::span<const Listed> catalogue, size_t typed) {
  std::set<std::string> found;
  for (const Listed &listed : catalogue) {
    const size_t dot = listed.path.find('.', typed);
    const std::string_view next = listed.path.substr(0, dot == std::string_view::npos ? dot : dot + 1);
    if (next.find("{i}") == std::string_view::npos) found.emplace(next);
  }
  return found;
}

std::string likely_path(std::string_view path) {
  std::string found;
  while (!path.empty()) {
    const std::string_view name = path.substr(0, path.find('.'));
    path.remove_prefix(std::min(path.size(), name.size() + 1));
    if (!found.empty() && !found.ends_with('.')) return ""; // a parameter has no members
    found = likely_member(found, name);
    if (found.empty()) return "";
  }
  return found;
}

Fault unknown_path(const std::string &path, const std::string &likely) {
  return {path, FaultCode::InvalidName, likely.empty() ? "" : "did you mean \"" + likely + "\"?"};
}

Fault unknown_parameter(const std::string &path) {
  const std::string likely = likely_path(path);
  return unknown_path(path, likely.ends_with('.') ? "" : likely);
}

} // namespace kova::request
