#include "device/diag/host.hpp"

#include "device/arguments.hpp"
#include "device/diag/failure.hpp"
#include "device/error.hpp"
#include "device/fd.hpp"

#include <fcntl.h>
#include <net/if.h>
#include <netdb.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include <array>
#include <csignal>
#include <cstring>
#include <memory>

namespace kova::diag {
namespace {

volatile sig_atomic_t child = 0;

void end_both(int signal) {
  if (child != 0) kill(static_cast<pid_t>(child), SIGKILL);
  std::signal(signal, SIG_DFL);
  raise(signal);
}

// Output and messages go to the pipe.
pid_t spawn(std::vector<std::string> &words, int out) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, out, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, out, STDERR_FILENO);
  pid_t pid = 0;
  const int error =
      posix_spawnp(&pid, words[0].c_str(), &actions, nullptr, device::pointers_to(words).data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (error == ENOENT) throw Failure(state::internal, "this host has no program " + words[0]);
  if (error != 0) throw Failure(state::internal, "cannot start " + words[0] + ": " + std::strerror(error));
  return pid;
}

void read_lines(int fd, const std::function<void(std::string_view)> &take_line) {
  const std::unique_ptr<FILE, decltype(&fclose)> stream(fdopen(fd, "r"), fclose);
  std::array<char, 4096> line{};
  while (fgets(line.data(), line.size(), stream.get()) != nullptr) {
    const std::string_view text(line.data());
    take_line(text.substr(0, text.find('\n')));
  }
}

} // namespace

void end_with_parent_and_child() {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP})
    std::signal(signal, end_both);
  prctl(PR_SET_PDEATHSIG, SIGTERM);
}

int run_program(std::vector<std::string> words, const std::function<void(std::string_view)> &take_line) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw Failure(state::internal, "cannot create a pipe");
  device::Fd writing(ends[1]);
  try {
    child = spawn(words, writing.get());
  } catch (...) {
    ::close(ends[0]);
    throw;
  }
  writing.close();
  read_lines(ends[0], take_line);
  int status = 0;
  while (waitpid(static_cast<pid_t>(child), &status, 0) < 0 && errno == EINTR) {
  }
  child = 0;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

std::string numeric_address(const std::string &host) {
  addrinfo hints{}, *found = nullptr;
  hints.ai_socktype = SOCK_DGRAM;
  const int error = getaddrinfo(host.c_str(), nullptr, &hints, &found);
  if (error != 0) throw Failure(state::cannot_resolve, host + ": " + gai_strerror(error));
  const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owner(found, freeaddrinfo);
  std::array<char, NI_MAXHOST> text{};
  getnameinfo(found->ai_addr, found->ai_addrlen, text.data(), text.size(), nullptr, 0, NI_NUMERICHOST);
  return text.data();
}

void expect_interface(const std::string &name) {
  if (!name.empty() && if_nametoindex(name.c_str()) == 0)
    throw Failure(state::other, "there is no interface " + name);
}

void replace_file(const std::string &path, std::string_view content) {
  const std::string draft = path + ".new";
  FILE *file = fopen(draft.c_str(), "we");
  if (file == nullptr) device::fail("cannot write " + draft);
  const bool written = fwrite(content.data(), 1, content.size(), file) == content.size();
  if (fclose(file) != 0 || !written || rename(draft.c_str(), path.c_str()) != 0)
    device::fail("cannot write " + path);
}

} // namespace kova::diag
