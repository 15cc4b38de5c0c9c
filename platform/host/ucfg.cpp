// The calls of the configuration tree. What a process writes is its own until it closes the tree, and a
// reading is over when the call returns. So a tree that somebody left open stands in nobody's way.
#include "platform/ucfg.h"

#include "platform/host/device_dir.hpp"
#include "platform/host/tree_admin.hpp"
#include "platform/nvram.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace kova::host;

constexpr int done = 0, failure = -1;
constexpr int only_handle = 0;

struct OpenTree {
  pid_t process = getpid();
  std::filesystem::path device; // that the written leaves are meant for
  std::vector<TreeLeaf> written;
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

std::string full_path(std::string_view path) {
  return path.starts_with('/') ? std::string(path) : '/' + std::string(path);
}

const TreeLeaf *find_written(const OpenTree &tree, std::string_view path) {
  if (tree.written.empty()) return nullptr;
  const auto leaf = std::ranges::find(tree.written, full_path(path), &TreeLeaf::first);
  return leaf == tree.written.end() ? nullptr : &*leaf;
}

void require_device(const OpenTree &tree) {
  if (tree.device != device_dir()) throw std::runtime_error("another device was chosen meanwhile");
}

} // namespace

int init_ucfg_ex(void) {
  return attempt("open the tree", [] {
    const OpenTree *earlier = open_tree();
    const bool goes_on = earlier != nullptr && (earlier->written.empty() || earlier->device == device_dir());
    if (!goes_on) opened.emplace();
    return done;
  });
}

int read_ucfg_xml(int handle, const char *path, char *dst) {
  constexpr std::size_t size = 256;
  const OpenTree *current = open_tree();
  if (current == nullptr || handle != only_handle || path == nullptr || dst == nullptr) return failure;
  return attempt("read a leaf", [&] {
    const TreeLeaf *written = find_written(*current, path);
    const std::optional<std::string> text = written != nullptr ? written->second : tree_find(path);
    if (!text) return failure;
    const std::size_t length = std::min(text->size(), size - 1);
    std::memcpy(dst, text->data(), length);
    dst[length] = '\0';
    return done;
  });
}

int write_ucfg_xml(int handle, const char *path, const char *value) {
  OpenTree *current = open_tree();
  if (current == nullptr || handle != only_handle || path == nullptr || value == nullptr) return failure;
  return counted(attempt("write a leaf", [&] {
    if (current->written.empty()) current->device = device_dir();
    require_device(*current);
    std::vector<TreeLeaf> written = current->written;
    std::erase_if(written, [&](const TreeLeaf &leaf) { return leaf.first == full_path(path); });
    written.emplace_back(full_path(path), value);
    tree_try(written);
    current->written = std::move(written);
    return done;
  }));
}

int deinit_ucfg_ex(int keep) {
  const OpenTree *current = open_tree();
  int result = done;
  if (current != nullptr && keep != 0 && !current->written.empty())
    result = counted(attempt("keep what was written", [current] {
      require_device(*current);
      tree_store(current->written);
      return done;
    }));
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
