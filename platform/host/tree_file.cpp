#include "platform/host/tree_file.hpp"

#include "platform/host/device_dir.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace fs = std::filesystem;

namespace kova::host {

namespace {

[[noreturn]] void fail(const std::string &what, const fs::path &file, int reason) {
  throw std::runtime_error("cannot " + what + " " + file.string() + ": " + std::strerror(reason));
}

bool is_text(const pugi::xml_node &node) {
  return node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
}

// Blanks alone may be a leaf's text, or the layout of an inner node that has nothing below it yet.
bool is_text_beyond_layout(const pugi::xml_node &node) {
  return is_text(node) &&
         std::string_view(node.value()).find_first_not_of(" \t\r\n") != std::string_view::npos;
}

bool starts_name(char c) {
  const auto byte = static_cast<unsigned char>(c);
  const int lower = c | 0x20;
  return (lower >= 'a' && lower <= 'z') || c == '_' || c == ':' || byte >= 0x80;
}

bool continues_name(char c) {
  return starts_name(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

bool is_xml_name(std::string_view name) {
  return !name.empty() && starts_name(name.front()) && std::ranges::all_of(name, continues_name);
}

// Calls use(name) for each name of the path until it answers false.
template <class Use>
bool each_name(std::string_view path, Use use) {
  path = without_leading_slash(path);
  while (true) {
    const std::size_t slash = path.find('/');
    if (!use(path.substr(0, slash))) return false;
    if (slash == std::string_view::npos) return true;
    path.remove_prefix(slash + 1);
  }
}

pugi::xml_node child_named(const pugi::xml_node &parent, std::string_view name) {
  return parent.find_child([name](const pugi::xml_node &child) { return child.name() == name; });
}

// The new file takes the old one's place when it is complete on disk, else it is removed.
void replace_file(const fs::path &file, std::string_view content) {
  const fs::path fresh = file.string() + ".new";
  const int fd = open(fresh.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, private_file);
  if (fd < 0) fail("create", fresh, errno);
  int failed = 0;
  while (!content.empty() && failed == 0) {
    const ssize_t written = write(fd, content.data(), content.size());
    if (written >= 0)
      content.remove_prefix(static_cast<std::size_t>(written));
    else if (errno != EINTR)
      failed = errno;
  }
  if (failed == 0 && fsync(fd) != 0) failed = errno;
  if (close(fd) != 0 && failed == 0) failed = errno;
  if (failed == 0 && rename(fresh.c_str(), file.c_str()) != 0) failed = errno;
  if (failed != 0) {
    unlink(fresh.c_str());
    fail("write", file, failed);
  }
}

// Makes the renaming itself outlive a crash of the machine. The tree is in place whether this works or not.
void sync_directory(const fs::path &dir) {
  const int fd = open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return;
  fsync(fd);
  close(fd);
}

} // namespace

fs::path tree_file() {
  return store_dir() / "tree.xml";
}

void parse_tree(pugi::xml_document &tree, std::string_view xml, const std::string &origin) {
  // Line ends and blanks belong to the text; comments are for whoever reads the file.
  constexpr unsigned exact = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_ws_pcdata_single |
                             pugi::parse_comments | pugi::parse_pi;
  const auto result = tree.load_buffer(xml.data(), xml.size(), exact);
  if (!result)
    throw std::runtime_error(origin + " is no XML: " + result.description() + " at byte " +
                             std::to_string(result.offset));
}

void load_tree(pugi::xml_document &tree, const fs::path &file) {
  tree.reset();
  std::FILE *stream = std::fopen(file.c_str(), "re");
  if (stream == nullptr) {
    if (errno == ENOENT || errno == ENOTDIR) return;
    fail("read", file, errno);
  }
  std::string xml;
  char block[16384];
  for (std::size_t length = 0; (length = std::fread(block, 1, sizeof block, stream)) > 0;)
    xml.append(block, length);
  const int failed = std::ferror(stream) != 0 ? errno : 0;
  std::fclose(stream);
  if (failed != 0) fail("read", file, failed);
  parse_tree(tree, xml, file.string());
}

void save_tree(const pugi::xml_document &tree, const fs::path &file) {
  struct Text : pugi::xml_writer {
    std::string xml;
    void write(const void *data, std::size_t size) override {
      xml.append(static_cast<const char *>(data), size);
    }
  } text;
  tree.save(text, "  ", pugi::format_default, pugi::encoding_utf8);
  replace_file(file, text.xml);
  sync_directory(file.parent_path());
}

TreeLock::TreeLock(const fs::path &file) : fd_(-1) {
  const fs::path lock = fs::path(file).replace_extension("lock");
  if (const int failed = prepare_store_dir(file.parent_path()); failed != 0)
    fail("write in", file.parent_path(), failed);
  fd_ = open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, private_file);
  if (fd_ < 0) fail("create", lock, errno);
  int failed = 0;
  while ((failed = flock(fd_, LOCK_EX)) != 0 && errno == EINTR) {
  }
  if (failed == 0) return;
  failed = errno;
  close(fd_);
  fail("lock", lock, failed);
}

TreeLock::~TreeLock() {
  close(fd_);
}

std::string_view without_leading_slash(std::string_view path) {
  return path.starts_with('/') ? path.substr(1) : path;
}

pugi::xml_node find_node(const pugi::xml_document &tree, std::string_view path) {
  pugi::xml_node node = tree;
  each_name(path, [&node](std::string_view name) {
    node = name.empty() ? pugi::xml_node() : child_named(node, name);
    return !node.empty();
  });
  return node;
}

bool has_children(const pugi::xml_node &node) {
  return std::ranges::any_of(node.begin(), node.end(),
                             [](const pugi::xml_node &child) { return child.type() == pugi::node_element; });
}

std::string leaf_text(const pugi::xml_node &leaf) {
  std::string text;
  for (const pugi::xml_node &child : leaf.children())
    if (is_text(child)) text += child.value();
  return text;
}

void put_leaf(pugi::xml_document &tree, std::string_view path, const std::string &text) {
  const auto refuse = [path](const char *why) {
    throw std::runtime_error("\"" + std::string(path) + "\" " + why);
  };
  if (!each_name(path, is_xml_name)) refuse("is no path of XML names");
  pugi::xml_node node = tree;
  each_name(path, [&](std::string_view name) {
    if (const pugi::xml_node child = child_named(node, name)) {
      node = child;
      return true;
    }
    if (node == tree && tree.document_element()) refuse("is outside the tree: it has another root");
    if (std::ranges::any_of(node.begin(), node.end(), is_text_beyond_layout))
      refuse("leads through a leaf that has a text");
    node = node.append_child(std::string(name).c_str());
    return true;
  });
  if (has_children(node)) refuse("has nodes below it, it cannot have a text");
  node.remove_children();
  node.append_child(pugi::node_pcdata).set_value(text.c_str());
}

} // namespace kova::host
