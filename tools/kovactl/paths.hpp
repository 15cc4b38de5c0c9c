// Parameter paths as a person types them: half, or wrong.
#pragma once

#include "model/model.hpp"

#include <set>
#include <span>
#include <string>
#include <string_view>

namespace kova::ctl {

// What the paths of these parameters, all of which begin with the same `typed` characters, may become: one level
// further, branches with their ".".
std::set<std::string> continuations(std::span<const model::Parameter *const> parameters, size_t typed);

// The parameter or branch that was most likely meant by an unknown path, or "".
std::string likely_path(std::string_view path);

} // namespace kova::ctl
