// The service daemon of the virtual device: accepts what agents ask of the device's services, logs it, and runs the
// diagnostics tests.
#include "device/background.hpp"
#include "device/daemons.hpp"
#include "device/error.hpp"
#include "device/log.hpp"
#include "device/paths.hpp"
#include "device/pid_file.hpp"
#include "device/serviced/any_readable.hpp"
#include "device/serviced/running_tests.hpp"
#include "device/serviced/server.hpp"
#include "src/frame/channel.hpp"

#include <nlohmann/json.hpp>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdio>
#include <string>

namespace {

using namespace kova;

std::string hexadecimal(uint32_t number) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08x", number);
  return text;
}

void log_request(const device::Request &request) {
  if (request.command == channel::connect_announcement) return;
  nlohmann::json record{{"kind", "service"},
                        {"pid", request.pid},
                        {"request", device::request_name(request.command)},
                        {"command", hexadecimal(request.command)},
                        {"payload", request.payload}};
  if (request.destination_type != channel::daemon_type) record["destination"] = request.destination_type;
  if (request.word != 0) record["word"] = request.word;
  device::log_record(std::move(record));
}

void log_malformed(pid_t client, const std::string &why) {
  device::log_record({{"kind", "service"},
                      {"pid", client},
                      {"request", "malformed"},
                      {"command", ""},
                      {"payload", ""},
                      {"reason", why}});
}

// A daemon whose device was removed has no more to do, and nobody would find it to end it. The directory of the stores
// is the one in which it has no file open itself; an open file keeps its directory from being seen to go.
device::Fd removal_of_device() {
  device::Fd events(inotify_init1(IN_CLOEXEC));
  inotify_add_watch(events.get(), (host::device_dir() / "store").c_str(), IN_DELETE_SELF | IN_ONLYDIR);
  return events;
}

constexpr const char *socket_name = "mrhd_socket";

// Works in the socket's directory, whose full name may be longer than a socket address has room for.
device::Fd listen_on_socket() {
  const auto directory = device::on_device("/tmp");
  if (chdir(directory.c_str()) != 0) device::fail("cannot enter " + directory.string());
  unlink(socket_name);
  device::Fd listener(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
  std::snprintf(address.sun_path, sizeof address.sun_path, "%s", socket_name);
  if (!listener || bind(listener.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
      listen(listener.get(), SOMAXCONN) != 0)
    device::fail("cannot listen on " + (directory / socket_name).string());
  return listener;
}

void serve() {
  const device::PidFile pid_file(device::run_dir() / device::service_daemon.pid_file);
  const device::Fd signals = device::end_signals(), removal = removal_of_device();
  const device::Fd stop = device::any_readable({signals.get(), removal.get()});
  const device::Fd listener = listen_on_socket();
  device::RunningTests tests;
  const auto take_request = [&tests](const device::Request &request) {
    log_request(request);
    return tests.handle(request);
  };
  device::announce_ready();
  device::Server(listener.get(), stop.get(), {take_request, log_malformed}, {},
                 {tests.events(), [&tests] { tests.look_after(); }})
      .run();
  tests.stop_all();
  unlink(socket_name);
}

} // namespace

int main(int argc, char **argv) {
  return device::run_in_background(device::service_daemon.program, argc, argv, serve);
}
