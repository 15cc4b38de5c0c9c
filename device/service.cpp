#include "device/service.hpp"

#include "device/error.hpp"
#include "device/file_system.hpp"
#include "device/layout.hpp"
#include "device/log.hpp"
#include "device/paths.hpp"
#include "device/pid_file.hpp"
#include "device/process.hpp"
#include "src/frame/channel.hpp"

#include <fcntl.h>
#include <kova/frame.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace kova::device {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto to_come_up = std::chrono::seconds(20), to_end = std::chrono::seconds(5);

// Until the descriptor is ready for it; false when that takes too long.
bool await(int fd, short event, Clock::time_point end) {
  pollfd wanted{fd, event, 0};
  while (true) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
    const int ready = poll(&wanted, 1, static_cast<int>(std::max<decltype(left)>(left, 0)));
    if (ready >= 0 || errno != EINTR) return ready > 0;
  }
}

std::string first_line(const Fd &file) {
  const auto end = Clock::now() + to_come_up;
  std::string line;
  for (char byte = 0; await(file.get(), POLLIN, end) && read(file.get(), &byte, 1) == 1 && byte != '\n';)
    line += byte;
  return line;
}

bool ends_in_time(const Daemon &daemon, pid_t pid) {
  const auto end = Clock::now() + to_end;
  while (daemon_pid(daemon) == pid) {
    if (Clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

// Named through its directory, whose own name may be longer than an address has room for.
Fd connected_to_service() {
  const Fd directory(open(on_device("/tmp").c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
  std::snprintf(address.sun_path, sizeof address.sun_path, "/proc/self/fd/%d/mrhd_socket", directory.get());
  Fd connection(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (connect(connection.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
    connection.close();
  return connection;
}

} // namespace

std::optional<pid_t> daemon_pid(const Daemon &daemon) {
  return pid_file_owner(pid_file_of(daemon));
}

void start_daemon(const Daemon &daemon, const std::vector<std::string> &arguments, const Lock &device_lock) {
  const std::string program = helper_program(daemon.program);
  const std::filesystem::path messages = messages_of(daemon);
  Pipe answer;
  Program started{.path = program,
                  .words = {program},
                  .output = answer.writing.get(),
                  .extra = device_lock.handle(),
                  .variables = {"KOVA_DEVICE=" + host::device_dir().string()}};
  if (daemon.argument != nullptr) started.words.emplace_back(daemon.argument);
  started.words.insert(started.words.end(), arguments.begin(), arguments.end());
  const Fd message_file = open_log(messages);
  started.messages = message_file.get();
  pid_t process = 0;
  if (const int error = start_program(process, started); error != 0) fail("cannot start " + program, error);
  answer.writing.close();
  const std::string line = first_line(answer.reading);
  if (line.empty()) { // it hangs, or has died
    kill(process, SIGKILL);
    stop_daemon(daemon);
  }
  await_end(process); // the daemon is its child, which nobody here has to wait for
  if (line != "ready")
    throw std::runtime_error(std::string(daemon.what) +
                             " does not come up: " + (line.empty() ? "see " + messages.string() : line));
}

void stop_daemon(const Daemon &daemon) {
  if (const auto pid = daemon_pid(daemon)) {
    kill(*pid, SIGTERM);
    if (!ends_in_time(daemon, *pid)) kill(*pid, SIGKILL);
    if (!ends_in_time(daemon, *pid))
      throw std::runtime_error(std::string(daemon.what) + " (process " + std::to_string(*pid) +
                               ") does not end");
  }
  remove_tree(pid_file_of(daemon)); // one that was killed has left it
}

std::optional<uint32_t> ask_service(uint32_t command, const std::string &payload,
                                    std::chrono::seconds patience) {
  const auto end = Clock::now() + patience;
  const Fd connection = connected_to_service();
  if (!connection && errno != EAGAIN) return std::nullopt; // EAGAIN: so many wait for it already
  MsgRecord header{}, reply{};
  std::memcpy(&header.magic, channel::magic, sizeof channel::magic);
  header.sourcePid = static_cast<uint32_t>(getpid());
  header.sourceType = channel::agent_type;
  header.destinationType = channel::daemon_type;
  header.command = command;
  header.confirm = 1;
  header.length = static_cast<uint32_t>(payload.size());
  std::string record(reinterpret_cast<const char *>(&header), sizeof header);
  record += payload;
  const bool sent = connection && send(connection.get(), record.data(), record.size(), MSG_NOSIGNAL) ==
                                      static_cast<ssize_t>(record.size());
  if (sent && await(connection.get(), POLLIN, end)) {
    if (recv(connection.get(), &reply, sizeof reply, MSG_DONTWAIT) == sizeof reply) return reply.wordData;
    return std::nullopt; // it has ended meanwhile
  }
  const auto pid = daemon_pid(service_daemon);
  if (!pid) return std::nullopt;
  throw std::runtime_error(std::string(service_daemon.what) + " (process " + std::to_string(*pid) +
                           ") does not answer: kovactl device reboot starts another");
}

} // namespace kova::device
