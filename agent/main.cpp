// kova-cwmpd: the CWMP agent of the virtual device, for one of its management instances.
#include "agent/agent.hpp"
#include "agent/control.hpp"
#include "device/background.hpp"

#include <getopt.h>

#include <cstdio>

namespace {

constexpr const char *usage =
    "usage: kova-cwmpd [--secondary] [--foreground] [--port PORT] [--trace FILE] [--ca FILE]\n"
    "                  [--cert FILE [--key FILE]] [--retry-wait SECONDS] [--timeout SECONDS]\n";

} // namespace

int main(int argc, char **argv) {
  const auto options = kova::agent::read_options(argc, argv);
  if (!options || optind != argc) {
    std::fputs(usage, stderr);
    return 2;
  }
  return kova::device::run_in_background(kova::agent::own_daemon(), options->foreground,
                                         [&] { kova::agent::run_agent(*options); });
}
