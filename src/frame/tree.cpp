#include "src/frame/tree.hpp"

#include "platform/ucfg.h"
#include "src/frame/trace.hpp"

namespace kova {

bool open_tree() {
  if (init_ucfg_ex() == 0) return true;
  KOVA_TRACE_ERROR("failed to init_ucfg() .\n");
  return false;
}

bool read_tree_leaf(const char *path, Text &into) {
  into = {};
  if (read_ucfg_xml(0, path, into.chars) == 0) return true;
  KOVA_TRACE_ERROR("No value.\n");
  return false;
}

void close_tree() {
  constexpr int keep_changes = 1;
  deinit_ucfg_ex(keep_changes);
}

int get_tree_leaf(const char *path, char *buf, unsigned int buflen) {
  Text text;
  if (!open_tree() || !read_tree_leaf(path, text)) return -1;
  const int result = answer(text, buf, buflen);
  close_tree();
  return result;
}

bool store_tree_leaf(const char *path, const char *value) {
  if (!open_tree()) return false;
  if (write_ucfg_xml(0, path, value) != 0) {
    dbg_trace("[TR069]set %s Error, value(%s) error\n", path, value);
    return false;
  }
  close_tree();
  return true;
}

} // namespace kova
