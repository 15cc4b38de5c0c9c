// Settings in the configuration tree.
#pragma once

#include "src/frame/text.hpp"

namespace kova {

// A read that fails leaves the tree open, and so does a write: agents have run with it for years, and the
// platform takes the next opening of an open tree.

// The plain getter of a leaf: -1 when the tree cannot be opened or has no such leaf.
int get_tree_leaf(const char *path, char *buf, unsigned int buflen);
// Opens the tree, writes one leaf, closes. False when a step failed.
bool store_tree_leaf(const char *path, const char *value);

// Opening, reading and closing for those who read several leaves.
bool open_tree();
bool read_tree_leaf(const char *path, Text &into);
void close_tree();

} // namespace kova
