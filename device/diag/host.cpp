#include "device/diag/host.hpp"

#include "device/diag/failure.hpp"
#include "device/process.hpp"

#include <net/if.h>
#include <netdb.h>
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
pid_t start(const std::vector<std::string> &words, const device::Fd &out) {
  pid_t pid = 0;
  const int error = device::start_program(
      pid, {.path = words[0], .words = words, .output = out.get(), .messages = out.get()});
  if (error == ENOENT) throw Failure(state::internal, "this host has no program " + words[0]);
  if (error != 0) throw Failure(state::internal, "cannot start " + words[0] + ": " + std::strerror(error));
  return pid;
}

void read_lines(device::Fd from, const std::function<void(std::string_view)> &take_line) {
  const std::unique_ptr<FILE, decltype(&fclose)> stream(fdopen(from.release(), "r"), fclose);
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

int run_program(const std::vector<std::string> &words,
                const std::function<void(std::string_view)> &take_line) {
  device::Pipe pipe;
  child = start(words, pipe.writing);
  pipe.writing.close();
  read_lines(std::move(pipe.reading), take_line);
  const int status = device::await_end(static_cast<pid_t>(child));
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

} // namespace kova::diag
