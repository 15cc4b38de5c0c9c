#include "device/background.hpp"

#include "device/error.hpp"
#include "device/paths.hpp"
#include "device/pid_file.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace kova::device {
namespace {

constexpr int device_lock = 3;

const PidFile *own_pid_file = nullptr;

// Whoever started this program must not wait for the end of a file that only this program still holds open.
void close_inherited_files() {
  if (fcntl(device_lock, F_GETFD) < 0)
    dup2(STDERR_FILENO, device_lock); // started by hand; the place stays taken
  close_range(device_lock + 1, ~0U, 0);
}

void leave_terminal_and_parent() {
  const pid_t child = fork();
  if (child < 0) fail("cannot fork");
  if (child > 0) _exit(0);
  setsid();
}

void serve_with_pid_file(const Daemon &daemon, const std::function<void()> &serve) {
  const PidFile pid_file(pid_file_of(daemon));
  if (chdir("/") != 0) fail("cannot enter /"); // keeps no directory of another's
  own_pid_file = &pid_file;
  serve();
  own_pid_file = nullptr;
}

} // namespace

int run_in_background(const Daemon &daemon, bool foreground, const std::function<void()> &serve) {
  try {
    umask(077);
    close_inherited_files();
    setenv("KOVA_DEVICE", host::device_dir().c_str(), 1); // stays the same in another working directory
    if (!foreground) leave_terminal_and_parent();
    serve_with_pid_file(daemon, serve);
    return 0;
  } catch (const std::exception &error) {
    std::puts(error.what());
    std::fflush(stdout);
    std::fprintf(stderr, "%s: %s\n", daemon.program, error.what());
    return 1;
  }
}

void announce_ready() {
  close(device_lock);
  std::puts("ready");
  std::fflush(stdout);
  dup2(STDERR_FILENO, STDOUT_FILENO);
}

bool is_wanted() {
  return own_pid_file != nullptr && own_pid_file->stands();
}

} // namespace kova::device
