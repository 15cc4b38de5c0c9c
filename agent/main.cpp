// kova-cwmpd: the CWMP agent of the virtual device, for one of its management instances.
#include "agent/agent.hpp"
#include "agent/control.hpp"
#include "device/background.hpp"

#include <getopt.h>
#include <kova/frame.h>

#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace {

kova::agent::AgentOptions options;

constexpr const char *usage =
    "usage: kova-cwmpd [--secondary] [--foreground] [--port PORT] [--trace FILE] [--ca FILE]\n"
    "                  [--cert FILE [--key FILE]] [--retry-wait SECONDS] [--timeout SECONDS]\n";

template <typename Number>
bool take_number(Number &number) {
  const char *end = optarg + std::strlen(optarg);
  const auto parsed = std::from_chars(optarg, end, number);
  return parsed.ec == std::errc() && parsed.ptr == end;
}

// The tasks run elsewhere.
std::string absolute(const char *file) {
  return std::filesystem::absolute(file).string();
}

bool take(int option, bool &foreground) {
  switch (option) {
  case 's':
    setSecondaryInstance();
    return true;
  case 'f':
    return foreground = true;
  case 'p':
    return take_number(options.port.emplace());
  case 't':
    options.trace = absolute(optarg);
    return true;
  case 'a':
    options.tls.ca = absolute(optarg);
    return true;
  case 'c':
    options.tls.certificate = absolute(optarg);
    return true;
  case 'k':
    options.tls.key = absolute(optarg);
    return true;
  case 'r':
    return take_number(options.least_retry_wait.emplace());
  case 'x':
    return take_number(options.exchange_seconds.emplace());
  default:
    return false;
  }
}

} // namespace

int main(int argc, char **argv) {
  // Not the library that the other tools have for this: the agent is to be small while it waits.
  constexpr option known[] = {
      {"secondary", no_argument, nullptr, 's'},     {"foreground", no_argument, nullptr, 'f'},
      {"port", required_argument, nullptr, 'p'},    {"trace", required_argument, nullptr, 't'},
      {"ca", required_argument, nullptr, 'a'},      {"cert", required_argument, nullptr, 'c'},
      {"key", required_argument, nullptr, 'k'},     {"retry-wait", required_argument, nullptr, 'r'},
      {"timeout", required_argument, nullptr, 'x'}, {nullptr, 0, nullptr, 0}};
  bool foreground = false, understood = true;
  for (int option; understood && (option = getopt_long(argc, argv, "", known, nullptr)) != -1;)
    understood = take(option, foreground);
  if (!understood || optind != argc) {
    std::fputs(usage, stderr);
    return 2;
  }
  return kova::device::run_in_background(kova::agent::own_daemon(), foreground,
                                         [] { kova::agent::run_agent(options); });
}
