#include "platform/host/device_dir.hpp"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace fs = std::filesystem;

namespace kova::host {

namespace {

std::string_view environment(const char *name) {
  const char *value = std::getenv(name);
  return value == nullptr ? std::string_view() : value;
}

fs::path home() {
  if (const auto named = environment("HOME"); !named.empty()) return named;
  const passwd *user = getpwuid(getuid());
  return user == nullptr ? "/" : user->pw_dir;
}

fs::path chosen_dir() {
  const auto named = environment("KOVA_DEVICE");
  return named.empty() ? state_dir() / "kova" : fs::path(named);
}

int write_permission(const fs::path &dir) {
  return faccessat(AT_FDCWD, dir.c_str(), W_OK | X_OK, AT_EACCESS) == 0 ? 0 : errno;
}

constexpr std::string_view mark_name = "kova-device";
constexpr std::string_view any_version = "kova device ", this_version = "kova device 1\n";

struct Mark {
  std::string text; // "": there is none
  int error = 0;    // why it cannot be read
  bool complete() const { return text == this_version; }
  // A claim that was interrupted; the next one writes the rest.
  bool unfinished() const { return text.size() < this_version.size() && this_version.starts_with(text); }
  bool of_another_version() const { return !complete() && !unfinished() && text.starts_with(any_version); }
};

Mark read_mark(const fs::path &dir) {
  const int fd = open((dir / mark_name).c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return {"", errno == ENOENT ? 0 : errno};
  char text[64];
  const ssize_t length = read(fd, text, sizeof text);
  const int failed = length < 0 ? errno : 0;
  close(fd);
  return {std::string(text, length < 0 ? 0 : static_cast<std::size_t>(length)), failed};
}

int write_mark(const fs::path &dir) {
  constexpr int flags = O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  const int fd = open((dir / mark_name).c_str(), flags, private_file);
  if (fd < 0) return errno;
  // Whoever claims the same directory at the same time writes the same text.
  const ssize_t length = pwrite(fd, this_version.data(), this_version.size(), 0);
  int failed = length < 0 ? errno : 0;
  if (failed == 0 && length != static_cast<ssize_t>(this_version.size())) failed = ENOSPC;
  if (fchmod(fd, private_file) != 0 && failed == 0) failed = errno;
  if (close(fd) != 0 && failed == 0) failed = errno;
  return failed;
}

int create_private_dir(const fs::path &dir) {
  std::error_code failed;
  if (dir.has_parent_path()) fs::create_directories(dir.parent_path(), failed);
  if (failed) return failed.value();
  if (mkdir(dir.c_str(), private_dir) != 0 && errno != EEXIST) return errno;
  return chmod(dir.c_str(), private_dir) == 0 ? 0 : errno;
}

DirState state_of(const fs::path &dir) {
  struct stat status = {};
  if (stat(dir.c_str(), &status) != 0)
    return errno == ENOENT || errno == ENOTDIR ? DirState::absent : DirState::inaccessible;
  if (!S_ISDIR(status.st_mode)) return DirState::foreign;
  const bool own = status.st_uid == geteuid();
  const Mark mark = read_mark(dir);
  if (mark.error == EACCES) return DirState::inaccessible;
  if (!own && (mark.complete() || mark.of_another_version())) return DirState::inaccessible;
  if (mark.complete()) return DirState::device;
  if (mark.of_another_version()) return DirState::outdated;

  std::error_code failed;
  fs::directory_iterator entries(dir, failed);
  if (failed) return DirState::inaccessible;
  const bool empty = std::all_of(begin(entries), end(entries), [&mark](const fs::directory_entry &entry) {
    return entry.path().filename() == mark_name && mark.error == 0 && mark.unfinished();
  });
  if (empty) return own ? DirState::empty : DirState::inaccessible;
  if (read_mark(dir).complete()) return own ? DirState::device : DirState::inaccessible; // claimed meanwhile
  // What versions without a mark laid out.
  return fs::exists(dir / "run" / "created", failed) ? DirState::outdated : DirState::foreign;
}

// Answers 0 or the system error.
int claim(const fs::path &dir, DirState state) {
  switch (state) {
  case DirState::device:
    return 0;
  case DirState::absent:
  case DirState::empty: {
    const int failed = create_private_dir(dir);
    return failed == 0 ? write_mark(dir) : failed;
  }
  case DirState::foreign:
    return ENOTEMPTY;
  case DirState::outdated:
    return ESTALE;
  case DirState::inaccessible:
    break;
  }
  return EACCES;
}

} // namespace

fs::path device_dir() {
  fs::path dir = chosen_dir();
  std::error_code unknown_working_dir;
  fs::path whole = fs::absolute(dir, unknown_working_dir);
  return unknown_working_dir ? dir : whole;
}

fs::path state_dir() {
  const fs::path state = environment("XDG_STATE_HOME");
  // The base directory specification: a relative path in the variable is to be ignored.
  return state.is_absolute() ? state : home() / ".local/state";
}

fs::path store_dir() {
  return device_dir() / "store";
}

DirState device_dir_state() {
  return state_of(device_dir());
}

void claim_device_dir() {
  const fs::path dir = device_dir();
  const DirState state = state_of(dir);
  const int failed = claim(dir, state);
  if (failed == 0) return;
  if (state == DirState::foreign)
    throw std::runtime_error(dir.string() +
                             " is not a virtual device and not empty: nothing in it is touched");
  if (state == DirState::outdated)
    throw std::runtime_error(
        dir.string() + " is a virtual device of another version: remove it, or choose another directory");
  if (state == DirState::inaccessible)
    throw std::runtime_error(dir.string() + " belongs to another user, or may not be looked at");
  throw std::runtime_error("cannot create the virtual device " + dir.string() + ": " +
                           std::generic_category().message(failed));
}

void release_device_dir() {
  const fs::path dir = device_dir();
  unlink((dir / mark_name).c_str());
  rmdir(dir.c_str());
}

int store_readable(const fs::path &store) {
  switch (state_of(store.parent_path())) {
  case DirState::device:
    return 0;
  case DirState::inaccessible:
    return EACCES;
  default:
    return ENOENT;
  }
}

int prepare_store_dir(const fs::path &store) {
  const fs::path device = store.parent_path();
  if (const int failed = claim(device, state_of(device)); failed != 0) return failed;
  if (write_permission(store) == ENOENT)
    if (const int failed = create_private_dir(store); failed != 0) return failed;
  for (const fs::path &dir : {device, store})
    if (const int failed = write_permission(dir); failed != 0) return failed;
  return 0;
}

} // namespace kova::host
