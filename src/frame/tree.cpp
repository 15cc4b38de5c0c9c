#include "src/frame/tree.hpp"

#include "platform/ucfg.h"
#include "src/frame/trace.hpp"

namespace kova {

Tree::Tree(AfterFailure after_failure) : after_failure_(after_failure), code_(init_ucfg_ex()) {
  if (code_ != 0) trace_error("failed to init_ucfg() .\n");
}

Tree::~Tree() {
  constexpr int keep_changes = 1;
  if (code_ == 0 && !(failed_ && after_failure_ == stays_open)) deinit_ucfg_ex(keep_changes);
}

int Tree::read(const char *path, Text &into) {
  into = {};
  const int result = read_ucfg_xml(0, path, into.chars);
  if (result == 0) return result;
  trace_error("No value.\n");
  failed_ = true;
  return result;
}

int Tree::write(const char *path, const char *value) {
  const int result = write_ucfg_xml(0, path, value);
  if (result != 0) failed_ = true;
  return result;
}

int get_tree_leaf(const char *path, char *buf, unsigned int buflen) {
  Tree tree(Tree::stays_open);
  Text text;
  if (tree.code() != 0 || tree.read(path, text) != 0) return -1;
  return answer(text, buf, buflen);
}

bool store_tree_leaf(const char *path, const char *value) {
  Tree tree(Tree::stays_open);
  if (tree.code() != 0) return false;
  if (tree.write(path, value) == 0) return true;
  dbg_trace("[TR069]set %s Error, value(%s) error\n", path, value);
  return false;
}

} // namespace kova
