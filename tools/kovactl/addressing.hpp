// Parameters as a person names them: by their whole path, by a tail of it that no other has, or with
// wildcards.
#pragma once

#include "kovactl/request.hpp"

#include <span>
#include <string>
#include <vector>

namespace kova::ctl {

enum class Kind { anything, parameter, list, row };

struct Addressed {
  std::vector<std::string> paths;
  std::vector<Fault> faults; // of tails that several have, and of wildcards that nothing matches
};
// A word that is no tail of any path stays as it is: the request says what is wrong with it. Call it in turn.
Addressed addressed(std::span<const std::string> words, Kind kind);

// What a half-typed path may become: one level further from its beginning.
std::vector<std::string> continued(const std::string &word, Kind kind, bool writable_only);

// The same for PATH=VALUE: a "=" behind a parameter, and the values that it may have.
std::vector<std::string> complete_assignment(const std::string &word);

} // namespace kova::ctl
