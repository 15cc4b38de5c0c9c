#include "sandbox.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace kova::test {
namespace {

constexpr const char *programs = R"(pwn() { : >pwned; }
logger() { while [ $# -gt 1 ]; do shift; done; printf %s "$1" >text; }
test_cpeevent() { logger "$@"; }
)";

std::optional<std::string> taken(const std::filesystem::path &path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return std::nullopt;
  std::string text(std::istreambuf_iterator<char>(file), {});
  std::filesystem::remove(path);
  return text;
}

} // namespace

Sandbox::Sandbox() {
  std::string name = (std::filesystem::temp_directory_path() / "kova-shell-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary directory");
  directory_ = name;
}

Sandbox::~Sandbox() {
  std::filesystem::remove_all(directory_);
}

Sandbox::Outcome Sandbox::run(const std::string &line) const {
  std::string script = programs + line, shell = "sh", command = "-c", path = "PATH=";
  char *const words[] = {shell.data(), command.data(), script.data(), nullptr};
  char *const environment[] = {path.data(), nullptr};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addchdir_np(&actions, directory_.c_str());
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_RDWR, 0);
  pid_t child = -1;
  const int error = posix_spawn(&child, "/bin/sh", &actions, nullptr, words, environment);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::runtime_error("no shell");
  waitpid(child, nullptr, 0);
  Outcome outcome{.text = taken(directory_ / "text"), .intruded = taken(directory_ / "pwned").has_value()};
  // What a value made besides, such as a file of another name.
  for (const auto &entry : std::filesystem::directory_iterator(directory_)) {
    std::filesystem::remove_all(entry);
    outcome.intruded = true;
  }
  return outcome;
}

} // namespace kova::test
