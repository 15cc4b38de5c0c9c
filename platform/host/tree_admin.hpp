// The configuration tree beyond the platform's calls. A leaf is a text at a path: names of letters, digits
// and "_-.:", joined by "/"; one in front changes nothing. Failures throw std::runtime_error with a text for
// a person.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#pragma GCC visibility push(default)
namespace kova::host {

using TreeLeaf = std::pair<std::string, std::string>; // path, text

// Every leaf at or below the path ("" or "/": all), as ("/tarn/...", text), in the order of the paths' bytes.
std::vector<TreeLeaf> tree_leaves(const std::string &prefix = "");
std::optional<std::string> tree_find(std::string_view path);
// Stores all leaves in one transaction: all or none. A path that leads through a leaf, or has leaves below
// it, is refused.
void tree_store(std::span<const TreeLeaf> leaves);
// Throws what tree_store() would throw now, and stores nothing.
void tree_try(std::span<const TreeLeaf> leaves);
void tree_clear();
// How often this process could not write or keep leaves, which accessors do not tell.
unsigned tree_failed_writes();

} // namespace kova::host
#pragma GCC visibility pop
