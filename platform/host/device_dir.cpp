#include "platform/host/device_dir.hpp"

#include <fcntl.h>
#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <initializer_list>
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
  if (const auto named = environment("KOVA_DEVICE"); !named.empty()) return named;
  const fs::path state = environment("XDG_STATE_HOME");
  // The base directory specification: a relative path in the variable is to be ignored.
  return (state.is_absolute() ? state : home() / ".local/state") / "kova";
}

int write_permission(const fs::path &dir) {
  return faccessat(AT_FDCWD, dir.c_str(), W_OK | X_OK, AT_EACCESS) == 0 ? 0 : errno;
}

} // namespace

fs::path device_dir() {
  fs::path dir = chosen_dir();
  std::error_code unknown_working_dir;
  fs::path whole = fs::absolute(dir, unknown_working_dir);
  return unknown_working_dir ? dir : whole;
}

fs::path store_dir() {
  return device_dir() / "store";
}

int prepare_store_dir(const fs::path &store) {
  if (write_permission(store) == ENOENT) {
    std::error_code failed;
    fs::create_directories(store, failed);
    if (failed) return failed.value();
  }
  for (const fs::path &dir : {store.parent_path(), store})
    if (const int failed = write_permission(dir); failed != 0) return failed;
  return 0;
}

} // namespace kova::host
