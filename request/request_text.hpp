// A set request as a text: one PATH=VALUE a line, or JSON.
#pragma once

#include "request/request.hpp"

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace kova::request {

// The person or program that asked made a mistake; nothing was done.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// What is wrong with the text of a NAME=VALUE, or "".
std::string assignment_rule(const std::string &text);
// Of a text that follows the rule. The value is everything behind the first "=".
Assignment as_assignment(std::string_view text);

// JSON is told by its first character. The errors name the source and the line.
std::vector<Assignment> parse_request(std::string_view text, const std::string &source);
// "-" is standard input.
std::vector<Assignment> read_request(const std::string &file);

} // namespace kova::request
