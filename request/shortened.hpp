// Values in messages.
#pragma once

#include <string>

namespace kova::request {

// The text, or its beginning and its length when it is too long for a message.
std::string shortened(const std::string &text);
// The same in quotation marks.
std::string quoted(const std::string &text);

} // namespace kova::request
