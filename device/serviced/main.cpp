// The daemon of the virtual device: accepts what agents ask of the device's services, logs it, and runs
// the diagnostics tests.
#include "device/background.hpp"
#include "device/file_system.hpp"
#include "device/log.hpp"
#include "device/paths.hpp"
#include "device/service.hpp"
#include "device/serviced/running_tests.hpp"
#include "device/serviced/server.hpp"
#include "src/frame/channel.hpp"

#include <cstdio>
#include <string>
#include <string_view>

namespace {

using namespace kova;

std::string hexadecimal(uint32_t number) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08x", number);
  return text;
}

void log_request(const device::Request &request) {
  if (request.command == channel::connect_announcement) return;
  device::LogFields record{{"kind", "service"},
                           {"pid", request.pid},
                           {"request", std::string(device::request_name(request.command))},
                           {"command", hexadecimal(request.command)},
                           {"payload", request.payload}};
  if (request.destination_type != channel::daemon_type)
    record.push_back({"destination", request.destination_type});
  if (request.word != 0) record.push_back({"word", request.word});
  device::log_record(record);
}

void log_malformed(pid_t client, const std::string &why) {
  device::log_record({{"kind", "service"},
                      {"pid", client},
                      {"request", "malformed"},
                      {"command", ""},
                      {"payload", ""},
                      {"reason", why}});
}

void serve() {
  device::Loop loop;
  device::RunningTests tests(loop);
  {
    const auto take_request = [&](const device::Request &request) {
      log_request(request);
      return tests.handle(request);
    };
    const device::Server server(loop, "/tmp/mrhd_socket", {take_request, log_malformed}, {});
    // Whose device was removed has no more to do, and nobody would find it to end it.
    device::Timer watch(loop, [&loop] {
      if (!device::is_wanted()) loop.stop();
    });
    watch.start(std::chrono::seconds(5), std::chrono::seconds(5));
    const auto end = [&loop] { loop.stop(); };
    const device::Signal terminated(loop, SIGTERM, end), interrupted(loop, SIGINT, end),
        hung_up(loop, SIGHUP, end);
    device::announce_ready();
    loop.run();
  }
  tests.stop_all();
}

} // namespace

int main(int argc, char **argv) {
  const bool foreground = argc == 2 && std::string_view(argv[1]) == "--foreground";
  if (argc > 1 && !foreground) {
    std::fputs("usage: kova-serviced [--foreground]\n", stderr);
    return 2;
  }
  return device::run_in_background(device::service_daemon, foreground, serve);
}
