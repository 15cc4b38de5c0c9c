// Names as a person types them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kova::request {

std::string lower(std::string_view text);
// The one that was most likely meant by a mistyped name, or "".
std::string likely_name(std::string_view typed, const std::vector<std::string> &names);

} // namespace kova::request
