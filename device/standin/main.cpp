// Stands for the device's programs: called by the name of one, it logs what that one was asked and, but for a
// few tools whose answer others rely on, does nothing else.
#include "device/log.hpp"
#include "device/routes.hpp"
#include "device/standin/tools.hpp"

#include <arpa/inet.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace kova;

using device::Arguments;

// The agent, where the path redirection tells; else whoever started this program.
int asking_process() {
  const int asking = device::asking_process();
  return asking != 0 ? asking : getppid();
}

void log_command(const std::string &program, const Arguments &arguments) {
  device::log_record(
      {{"kind", "command"}, {"pid", asking_process()}, {"program", program}, {"args", arguments}});
}

std::string joined(Arguments::const_iterator word, Arguments::const_iterator end) {
  std::string text = *word;
  while (++word != end)
    text += " " + *word;
  return text;
}

int log_event(const Arguments &arguments) {
  const std::string method = arguments.empty() ? "" : arguments[0];
  if (arguments.size() < 2 || (method != "notify" && method != "call" && method != "is_busy")) {
    std::fputs("usage: test_cpeevent notify|call|is_busy EVENT...\n", stderr);
    return 1;
  }
  device::log_record({{"kind", "event"},
                      {"pid", asking_process()},
                      {"method", method},
                      {"event", joined(arguments.begin() + 1, arguments.end())}});
  return 0;
}

// logger [-p PRIORITY] [-t TAG] TEXT...
int log_message(const Arguments &arguments) {
  std::string priority, tag;
  auto word = arguments.begin();
  for (; arguments.end() - word >= 2 && (*word == "-p" || *word == "-t"); word += 2)
    (*word == "-p" ? priority : tag) = word[1];
  if (word == arguments.end() || word->starts_with('-')) {
    std::fputs("usage: logger [-p PRIORITY] [-t TAG] TEXT...\n", stderr);
    return 1;
  }
  device::log_record({{"kind", "syslog"},
                      {"pid", asking_process()},
                      {"priority", priority},
                      {"tag", tag},
                      {"text", joined(word, arguments.end())}});
  return 0;
}

std::string dotted(uint32_t address) {
  char text[INET_ADDRSTRLEN];
  return inet_ntop(AF_INET, &address, text, sizeof text);
}

std::string flag_letters(unsigned flags) {
  constexpr std::pair<unsigned, char> letters[] = {{0x200, '!'}, {1, 'U'}, {2, 'G'}, {4, 'H'}};
  std::string text;
  for (const auto &[flag, letter] : letters)
    if ((flags & flag) != 0) text += letter;
  return text;
}

int print_routes(bool numeric) {
  std::puts("Kernel IP routing table\n"
            "Destination     Gateway         Genmask         Flags Metric Ref    Use Iface");
  for (const device::Route &route : device::host_routes()) {
    const std::string destination = route.is_default() && !numeric ? "default" : dotted(route.destination);
    std::printf("%-15s %-15s %-15s %-5s %-6d %-3u %6u %s\n", destination.c_str(),
                dotted(route.gateway).c_str(), dotted(route.mask).c_str(), flag_letters(route.flags).c_str(),
                route.metric, route.references, route.use, route.interface.c_str());
  }
  return 0;
}

} // namespace

int main(int argc, char **argv) {
  umask(077);
  const Arguments arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
  const std::string_view called = argc > 0 ? argv[0] : "";
  const std::string program(called.substr(called.rfind('/') + 1));
  if (program.empty() || program == "kova-standin") {
    std::fputs("kova-standin: is called by the name of the program that it stands for\n", stderr);
    return 1;
  }
  if (program == "test_cpeevent") return log_event(arguments);
  if (program == "logger") return log_message(arguments);
  // A look at the routes changes nothing and is no request to the device.
  if (program == "route" && arguments.empty()) return print_routes(false);
  if (program == "route" && arguments == Arguments{"-n"}) return print_routes(true);
  log_command(program, arguments);
  if (program == "ntp.sh") return device::run_ntp_script(asking_process(), arguments);
  if (program == "maintenance.cgi") return device::run_maintenance(arguments);
  return 0;
}
