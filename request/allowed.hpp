// What a parameter may be set to, as it is told to a person and to other programs.
#pragma once

#include "model/model.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kova::request {

struct AllowedValues {
  std::string text; // completes "it takes ..."; "" when nothing is known
  std::optional<std::pair<std::int64_t, std::int64_t>> range;
  std::vector<std::pair<std::string, std::string>> words; // each with its meaning, which may be ""
  std::optional<std::pair<std::size_t, std::size_t>> length;
  std::string pattern; // of XML Schema; "" for none
};

// Of a writable parameter, from the rule and the condition in its row.
AllowedValues allowed_values(const model::Parameter &parameter);

} // namespace kova::request
