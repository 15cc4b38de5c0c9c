// Settings in the configuration tree.
#pragma once

#include "src/frame/text.hpp"

namespace kova {

// The tree, open for as long as this lives.
class Tree {
public:
  enum AfterFailure {
    closes,
    // Agents have run for years with getters that leave the tree open when they cannot read, and setters that leave it
    // open when they cannot write; the platform takes the next opening of an open tree.
    stays_open
  };
  explicit Tree(AfterFailure after_failure = closes);
  ~Tree();
  Tree(const Tree &) = delete;
  Tree &operator=(const Tree &) = delete;

  // All answer the platform's code, 0 for success.
  int code() const { return code_; } // of the opening
  int read(const char *path, Text &into);
  int write(const char *path, const char *value);

private:
  AfterFailure after_failure_;
  int code_;
  bool failed_ = false;
};

// The plain getter of a leaf: -1 when the tree cannot be opened or has no such leaf.
int get_tree_leaf(const char *path, char *buf, unsigned int buflen);
// Writes one leaf. False when a step failed.
bool store_tree_leaf(const char *path, const char *value);

} // namespace kova
