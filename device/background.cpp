#include "device/background.hpp"

#include "device/error.hpp"
#include "platform/host/device_dir.hpp"

#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace kova::device {
namespace {

// Whoever started this program must not wait for the end of a file that only this program still holds open.
void close_inherited_files() {
  close_range(STDERR_FILENO + 1, ~0U, 0);
}

void leave_terminal_and_parent() {
  const pid_t child = fork();
  if (child < 0) fail("cannot fork");
  if (child > 0) _exit(0);
  setsid();
}

} // namespace

int run_in_background(const char *name, int argc, char **argv, void (*serve)()) {
  const bool foreground = argc == 2 && std::string_view(argv[1]) == "--foreground";
  if (argc > 1 && !foreground) {
    std::fprintf(stderr, "usage: %s [--foreground]\n", name);
    return 2;
  }
  try {
    close_inherited_files();
    setenv("KOVA_DEVICE", host::device_dir().c_str(), 1); // stays the same in another working directory
    if (!foreground) leave_terminal_and_parent();
    serve();
    return 0;
  } catch (const std::exception &error) {
    std::puts(error.what());
    std::fflush(stdout);
    std::fprintf(stderr, "%s: %s\n", name, error.what());
    return 1;
  }
}

Fd end_signals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    std::signal(number, SIG_DFL);
    sigaddset(&signals, number);
  }
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  return Fd(signalfd(-1, &signals, SFD_CLOEXEC));
}

void announce_ready() {
  std::puts("ready");
  std::fflush(stdout);
  dup2(STDERR_FILENO, STDOUT_FILENO);
}

} // namespace kova::device
