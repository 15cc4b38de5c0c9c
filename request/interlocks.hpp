// Parameters and rows that can be set only while another parameter has a certain value.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace kova::request {

// What must be switched on before this path can be set ("the MAC filter is off: set ...Enable=1 first");
// none when nothing stands in the way. Asks the device.
std::optional<std::string> interlock_of(std::string_view path);
// The same after these values, by their paths, were set.
std::optional<std::string> interlock_of(std::string_view path,
                                        const std::map<std::string, std::string> *given);

// How many others, each closed by the next, may have to be set before this path: an order in which all can be set.
int interlocks_ahead_of(std::string_view path);

} // namespace kova::request
