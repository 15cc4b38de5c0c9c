#include "device/file_system.hpp"

#include "device/error.hpp"
#include "device/fd.hpp"
#include "platform/host/device_dir.hpp"

#include <fcntl.h>
#include <sys/stat.h>

#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

namespace kova::device {
namespace {

bool write_all(const Fd &file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = write(file.get(), text.data(), text.size());
    if (count < 0 && errno != EINTR) return false;
    if (count > 0) text.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

bool is_real_directory(const fs::path &path) {
  struct stat status = {};
  return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

bool is_there(const fs::path &path) {
  struct stat status = {};
  return lstat(path.c_str(), &status) == 0;
}

std::string text_of(const fs::path &path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

void write_file(const fs::path &path, std::string_view text) {
  const std::string draft = path.string() + "." + std::to_string(getpid()) + ".new";
  const Fd file(
      open(draft.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, host::private_file));
  if (file && write_all(file, text) && rename(draft.c_str(), path.c_str()) == 0) return;
  const int error = errno;
  if (file) unlink(draft.c_str());
  fail("cannot write " + path.string(), error);
}

void make_directories(const fs::path &path) {
  if (mkdir(path.c_str(), host::private_dir) == 0) return;
  if (errno == ENOENT && path.has_relative_path()) {
    make_directories(path.parent_path());
    if (mkdir(path.c_str(), host::private_dir) == 0) return;
  }
  if (errno != EEXIST) fail("cannot create " + path.string());
  if (!is_real_directory(path))
    throw std::runtime_error(path.string() + " is in the way: it is no directory");
}

void remove_tree(const fs::path &path) {
  std::error_code error;
  fs::remove_all(path, error);
  if (error) fail("cannot remove " + path.string(), error.value());
}

void make_link(const fs::path &target, const fs::path &path, const fs::path &like) {
  const auto leads_there = [&target](const fs::path &link_path) {
    std::error_code error;
    return fs::read_symlink(link_path, error) == target;
  };
  if (leads_there(path)) return;
  make_directories(path.parent_path());
  if (!like.empty() && leads_there(like) && link(like.c_str(), path.c_str()) == 0) return;
  if ((unlink(path.c_str()) != 0 && errno != ENOENT) || symlink(target.c_str(), path.c_str()) != 0)
    fail("cannot create " + path.string());
}

bool is_at(const fs::path &path, int fd) {
  struct stat open_file = {}, named_file = {};
  return fstat(fd, &open_file) == 0 && stat(path.c_str(), &named_file) == 0 &&
         open_file.st_ino == named_file.st_ino && open_file.st_dev == named_file.st_dev;
}

} // namespace kova::device
