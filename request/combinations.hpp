// The rules that hold across the values of a group.
#pragma once

#include "request/request.hpp"

#include <span>
#include <string>

namespace kova::request {

// Which of the rules of the parameter's group the values of the request break, together with the device's
// others; "" when none is known to be.
std::string broken_combination(std::span<const Assignment> request, const std::string &path);

} // namespace kova::request
