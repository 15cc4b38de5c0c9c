#include "kovactl/addressing.hpp"

#include "kovactl/command.hpp"
#include "request/allowed.hpp"

#include <fnmatch.h>

#include <algorithm>
#include <set>

namespace kova::ctl {
namespace {

bool is(Kind kind, const std::string &path) {
  switch (kind) {
  case Kind::anything:
    return true;
  case Kind::parameter:
    return !path.ends_with('.');
  case Kind::list:
    return model::find_list(path) != nullptr;
  case Kind::row: {
    const auto row = model::row_at(path);
    return row && row->is_branch;
  }
  }
  return false;
}

bool is_whole(const std::string &word) {
  return word.empty() || model::find(word) || model::row_at(word) || model::find_list(word) ||
         !model::branch(word).empty();
}

bool has_wildcards(const std::string &word) {
  return word.find_first_of("*?[") != std::string::npos;
}

bool matches(const std::string &pattern, const std::string &path) {
  const auto match = [&](const std::string &whole) { return fnmatch(whole.c_str(), path.c_str(), 0) == 0; };
  return path.ends_with('.') == pattern.ends_with('.') && (match(pattern) || match("*." + pattern));
}

std::string listed(const std::vector<std::string> &paths) {
  constexpr size_t most = 4;
  std::string text;
  for (size_t i = 0; i < std::min(paths.size(), most); ++i)
    text += (i == 0 ? "" : ", ") + paths[i];
  return paths.size() > most ? text + " and " + std::to_string(paths.size() - most) + " more" : text;
}

// As far as they can be counted up.
std::vector<std::string> values_of(const std::string &path) {
  const model::Parameter *parameter = model::find(path);
  if (!parameter) return {};
  std::vector<std::string> values;
  for (const auto &[word, meaning] : allowed_values(*parameter).words)
    values.push_back(word);
  return values;
}

} // namespace

Addressed addressed(std::span<const std::string> words, Kind kind) {
  Addressed found;
  std::vector<Name> names;
  for (const std::string &word : words) {
    if (is_whole(word)) {
      found.paths.push_back(word);
      continue;
    }
    if (names.empty()) names = get_names("", false).names;
    const bool wild = has_wildcards(word);
    std::vector<std::string> candidates;
    for (const Name &name : names)
      if (is(kind, name.path) && (wild ? matches(word, name.path) : name.path.ends_with("." + word)))
        candidates.push_back(name.path);
    if (wild && candidates.empty())
      found.faults.push_back({word, FaultCode::InvalidName, "nothing matches it"});
    else if (candidates.size() > 1 && (!wild || kind != Kind::anything))
      found.faults.push_back({word, FaultCode::InvalidName, "it could be " + listed(candidates)});
    else if (candidates.empty())
      found.paths.push_back(word);
    else
      found.paths.insert(found.paths.end(), candidates.begin(), candidates.end());
  }
  return found;
}

std::vector<std::string> continued(const std::string &word, Kind kind, bool writable_only) {
  std::set<std::string> whole, tails;
  for (const Name &name : get_names("", false).names) {
    if (!is(kind, name.path) || (writable_only && !name.writable)) continue;
    const bool is_whole = name.path.starts_with(word);
    const size_t begin = is_whole ? 0 : name.path.find("." + word) + 1;
    if (begin == 0 && !is_whole) continue;
    const size_t dot = name.path.find('.', begin + word.size());
    const std::string next = name.path.substr(begin, dot == std::string::npos ? dot : dot + 1 - begin);
    if (next != word || !word.ends_with('.')) (is_whole ? whole : tails).insert(next);
  }
  const std::set<std::string> &found = whole.empty() ? tails : whole;
  return {found.begin(), found.end()};
}

std::vector<std::string> complete_assignment(const std::string &word) {
  std::vector<std::string> found;
  if (const size_t equals = word.find('='); equals != std::string::npos) {
    const std::string path = word.substr(0, equals), assigned = path + "=";
    const std::vector<std::string> meant = addressed(std::span(&path, 1), Kind::parameter).paths;
    if (meant.size() != 1) return {};
    for (const std::string &value : values_of(meant.front()))
      found.push_back(assigned + value);
    return beginning_with(word, found);
  }
  found = continued(word, Kind::parameter, true);
  for (std::string &path : found)
    if (!path.ends_with('.')) path += "=";
  return found;
}

} // namespace kova::ctl
