// Failures of system calls as texts for a person.
#pragma once

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace kova::device {

[[noreturn]] inline void fail(const std::string &what, int error = errno) {
  throw std::runtime_error(what + ": " + std::strerror(error));
}

// Calls with the path and an error code to be set; what: "cannot create", "cannot remove".
template <typename Call>
auto on_path(const char *what, const std::filesystem::path &path, Call call) {
  std::error_code error;
  const auto result = call(path, error);
  if (error) throw std::runtime_error(std::string(what) + " " + path.string() + ": " + error.message());
  return result;
}

inline void make_directories(const std::filesystem::path &path) {
  on_path("cannot create", path,
          [](const auto &p, auto &e) { return std::filesystem::create_directories(p, e); });
}

inline void remove_tree(const std::filesystem::path &path) {
  on_path("cannot remove", path, [](const auto &p, auto &e) { return std::filesystem::remove_all(p, e); });
}

} // namespace kova::device
