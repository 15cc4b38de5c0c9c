// The types of parameters as texts, in the forms of XML Schema.
#pragma once

#include "model/model.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace kova::request {

// Whether a value that somebody wants to set can be one of the type. An empty text always can: many settings
// are emptied so. Addresses and lists are texts here; what they hold is for the parameter's own rule.
bool can_be(model::Type type, std::string_view text);

// A boolean in its other spelling ("1" for "true", "false" for "0"); none for a text that is no boolean.
std::optional<std::string> other_spelling(std::string_view boolean);

} // namespace kova::request
