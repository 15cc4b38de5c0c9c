// What the tools of a development host need of the configuration tree beyond the platform's calls. Failures throw
// std::runtime_error with a text for a person.
#pragma once

#include <string>
#include <utility>
#include <vector>

#pragma GCC visibility push(default)
namespace kova::host {

// Every leaf at or below the path ("" or "/": all), as ("/tarn/...", text), in the order of the file.
std::vector<std::pair<std::string, std::string>> tree_leaves(const std::string &prefix = "");
// Replaces the whole tree by this XML document (used to install factory settings).
void tree_replace(const std::string &xml);
// How often this process could not write or keep leaves, which accessors do not tell.
unsigned tree_failed_writes();

} // namespace kova::host
#pragma GCC visibility pop
