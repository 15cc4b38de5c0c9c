// Why the device refused a value: what it asked of its platform last, and what it said about it.
#pragma once

#include "request/request.hpp"

#include <span>
#include <string>

namespace kova::request {

// What was said before does not concern what comes now.
void forget_reasons();
// Of a value that was refused just now: "it takes a number from 0 to 13"; "" when the device kept it to
// itself.
std::string reason(const Assignment &assignment);
// Of values that were refused together.
std::string reason_of_combination(std::span<const Assignment> request, const std::string &path);

} // namespace kova::request
