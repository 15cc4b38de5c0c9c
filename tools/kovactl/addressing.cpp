#include "kovactl/addressing.hpp"

#include "request/allowed.hpp"

#include <fnmatch.h>

#include <algorithm>

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
  if (parameter->type == model::Type::Boolean) return {"0", "1"};
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
  std::vector<std::string> found;
  for (const Name &name : get_names("", false).names) {
    if (!name.path.starts_with(word) || !is(kind, name.path) || (writable_only && !name.writable)) continue;
    const size_t dot = name.path.find('.', word.size());
    std::string next = name.path.substr(0, dot == std::string::npos ? dot : dot + 1);
    if (next != word && (found.empty() || found.back() != next)) found.push_back(std::move(next));
  }
  return found;
}

std::vector<std::string> complete_assignment(const std::string &word) {
  std::vector<std::string> found;
  if (const size_t equals = word.find('='); equals != std::string::npos) {
    const std::string path = word.substr(0, equals + 1);
    for (const std::string &value : values_of(word.substr(0, equals)))
      if (value.starts_with(word.substr(equals + 1))) found.push_back(path + value);
    return found;
  }
  found = continued(word, Kind::parameter, true);
  for (std::string &path : found)
    if (!path.ends_with('.')) path += "=";
  return found;
}

} // namespace kova::ctl
