// The calls of the configuration tree. A process works on a copy of its own, which it reads when it opens the tree; what
// it writes is merged into the file when it closes the tree. So a tree that somebody left open stands in nobody's way.
#include "platform/ucfg.h"

#include "platform/host/tree_admin.hpp"
#include "platform/host/tree_file.hpp"
#include "platform/nvram.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace kova::host;

constexpr int done = 0, failure = -1;
constexpr int only_handle = 0;

struct Written {
  std::string path, text;
};

struct OpenTree {
  pid_t process = getpid();
  std::filesystem::path file = tree_file();
  pugi::xml_document tree;
  std::vector<Written> written; // not in the file yet, in the order of the first writing
};

std::optional<OpenTree> opened;

// The open tree of this process: one that was inherited by fork() is the parent's business.
OpenTree *open_tree() {
  if (opened && opened->process != getpid()) opened.reset();
  return opened ? &*opened : nullptr;
}

// Nothing is thrown at the callers: they are plain C.
template <class Work>
int attempt(const char *what, Work work) {
  try {
    return work();
  } catch (const std::exception &reason) {
    tarn_log_console("ucfg: cannot %s: %s", what, reason.what());
    return failure;
  }
}

unsigned failed_writes = 0;

int counted(int result) {
  if (result != done) ++failed_writes;
  return result;
}

void remember(std::vector<Written> &written, const std::string &path, const char *text) {
  const auto earlier = std::ranges::find(written, path, &Written::path);
  if (earlier != written.end())
    earlier->text = text;
  else
    written.push_back({path, text});
}

// Answers a failure when the tree has meanwhile changed so that a leaf has no place in it; the others are put.
int put_written(pugi::xml_document &tree, const std::vector<Written> &written) {
  int result = done;
  for (const Written &leaf : written)
    if (attempt("keep a change", [&] { return put_leaf(tree, leaf.path, leaf.text), done; }) != done)
      result = failure;
  return result;
}

int save(const OpenTree &changed) {
  const TreeLock lock(changed.file);
  pugi::xml_document tree;
  load_tree(tree, changed.file);
  const int result = put_written(tree, changed.written);
  save_tree(tree, changed.file);
  return result;
}

} // namespace

int init_ucfg_ex(void) {
  return attempt("open the tree", [] {
    OpenTree fresh;
    load_tree(fresh.tree, fresh.file);
    if (OpenTree *earlier = open_tree(); earlier != nullptr && earlier->file == fresh.file) {
      fresh.written = std::move(earlier->written);
      put_written(fresh.tree, fresh.written);
    }
    opened = std::move(fresh);
    return done;
  });
}

int read_ucfg_xml(int handle, const char *path, char *dst) {
  constexpr std::size_t size = 256;
  const OpenTree *current = open_tree();
  if (current == nullptr || handle != only_handle || path == nullptr || dst == nullptr) return failure;
  return attempt("read a leaf", [&] {
    const pugi::xml_node leaf = find_node(current->tree, path);
    if (leaf.empty() || has_children(leaf)) return failure;
    const std::string text = leaf_text(leaf);
    const std::size_t length = std::min(text.size(), size - 1);
    std::memcpy(dst, text.data(), length);
    dst[length] = '\0';
    return done;
  });
}

int write_ucfg_xml(int handle, const char *path, const char *value) {
  OpenTree *current = open_tree();
  if (current == nullptr || handle != only_handle || path == nullptr || value == nullptr) return failure;
  return counted(attempt("write a leaf", [&] {
    put_leaf(current->tree, path, value);
    remember(current->written, std::string(without_leading_slash(path)), value);
    return done;
  }));
}

int deinit_ucfg_ex(int keep) {
  const OpenTree *current = open_tree();
  int result = done;
  if (current != nullptr && keep != 0 && !current->written.empty())
    result = counted(attempt("keep what was written", [current] { return save(*current); }));
  opened.reset();
  return result;
}

// The device batches its writes to flash between these two; a host has nothing to batch.
int Init_Start(void) {
  return done;
}

int Init_End(void) {
  return done;
}

unsigned kova::host::tree_failed_writes() {
  return failed_writes;
}
