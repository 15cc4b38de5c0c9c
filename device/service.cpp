#include "device/service.hpp"

#include "device/arguments.hpp"
#include "device/error.hpp"
#include "device/fd.hpp"
#include "device/layout.hpp"
#include "device/paths.hpp"
#include "device/pid_file.hpp"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>

#include <chrono>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

namespace kova::device {
namespace {

constexpr auto patience = std::chrono::seconds(10);

// Input from nowhere, output (the daemon's first line) to the pipe, messages to a file.
class SpawnActions {
public:
  SpawnActions(int out, const std::string &messages) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_adddup2(&actions_, out, STDOUT_FILENO); // first: out may be one of the other two
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, messages.c_str(),
                                     O_WRONLY | O_CREAT | O_APPEND, 0666);
  }
  ~SpawnActions() { posix_spawn_file_actions_destroy(&actions_); }
  SpawnActions(const SpawnActions &) = delete;
  SpawnActions &operator=(const SpawnActions &) = delete;
  const posix_spawn_file_actions_t *get() const { return &actions_; }

private:
  posix_spawn_file_actions_t actions_;
};

std::vector<std::string> daemon_environment() {
  const std::string name = "KOVA_DEVICE=";
  std::vector<std::string> variables{name + host::device_dir().string()};
  for (char **variable = environ; *variable != nullptr; variable++)
    if (!std::string_view(*variable).starts_with(name)) variables.emplace_back(*variable);
  return variables;
}

void spawn(const std::string &program, const SpawnActions &actions) {
  char *const arguments[] = {const_cast<char *>(program.c_str()), nullptr};
  std::vector<std::string> variables = daemon_environment();
  pid_t pid = 0;
  const int error =
      posix_spawn(&pid, program.c_str(), actions.get(), nullptr, arguments, pointers_to(variables).data());
  if (error != 0) fail("cannot start " + program, error);
  // It leaves at once; the daemon is its child, which nobody here has to wait for.
  while (waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
  }
}

std::string first_line(int fd) {
  std::string line;
  pollfd readable{fd, POLLIN, 0};
  char byte = 0;
  while (poll(&readable, 1, static_cast<int>(std::chrono::milliseconds(patience).count())) > 0 &&
         read(fd, &byte, 1) == 1 && byte != '\n')
    line += byte;
  return line;
}

bool ends_within_patience(const Daemon &daemon, pid_t pid) {
  const auto deadline = std::chrono::steady_clock::now() + patience;
  while (daemon_pid(daemon) == pid) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

// "ready", or what went wrong.
std::string start_once(const Daemon &daemon) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) fail("cannot create a pipe");
  const Fd reading(ends[0]);
  Fd writing(ends[1]);
  const std::string messages = log_dir() / daemon.messages;
  spawn(helper_program(daemon.program), SpawnActions(writing.get(), messages));
  writing.close();
  const std::string answer = first_line(reading.get());
  return answer.empty() ? "see " + messages : answer;
}

} // namespace

std::optional<pid_t> daemon_pid(const Daemon &daemon) {
  return pid_file_owner(run_dir() / daemon.pid_file);
}

void start_daemon(const Daemon &daemon) {
  std::string answer = start_once(daemon);
  if (answer != "ready" && daemon_pid(daemon)) {
    // One that was still on its way, its starter having been killed, came first.
    stop_daemon(daemon);
    answer = start_once(daemon);
  }
  if (answer != "ready") throw std::runtime_error(std::string(daemon.what) + " does not come up: " + answer);
}

void stop_daemon(const Daemon &daemon) {
  if (const auto pid = daemon_pid(daemon)) {
    kill(*pid, SIGTERM);
    if (!ends_within_patience(daemon, *pid)) kill(*pid, SIGKILL);
    if (!ends_within_patience(daemon, *pid))
      fail(std::string(daemon.what) + " (process " + std::to_string(*pid) + ") does not end");
  }
  remove_tree(run_dir() / daemon.pid_file); // one that was killed has left it
}

std::optional<pid_t> service_pid() {
  return daemon_pid(service_daemon);
}

void start_service() {
  start_daemon(service_daemon);
}

void stop_service() {
  stop_daemon(service_daemon);
  remove_tree(on_device("/tmp/mrhd_socket")); // likewise
}

} // namespace kova::device
