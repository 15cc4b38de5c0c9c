// Parameter paths as a person types them: half, or wrong.
#pragma once

#include "model/model.hpp"
#include "request/fault.hpp"

#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kova::request {

// What the model says of a parameter, or of the rows of a list.
struct Listed {
  std::string_view path; // a row's number is "{i}"
  model::Type type;
  model::Access access;
  std::string_view unit, meaning;
  bool writable() const { return access == model::Access::ReadWrite; }
};
// Whatever has a path that begins so, in order.
std::vector<Listed> starting_with(std::string_view prefix);

// What these paths, all of which begin with the same `typed` characters, may become: one level further,
// branches with their ".". Rows are not counted up.
std::set<std::string> continuations(std::span<const Listed> catalogue, size_t typed);

// The parameter or branch that was most likely meant by an unknown path, or "".
std::string likely_path(std::string_view path);

// The fault of a path that nothing has, and of one that no parameter has.
Fault unknown_path(const std::string &path, const std::string &likely);
Fault unknown_parameter(const std::string &path);

} // namespace kova::request
