#include "device/log.hpp"
#include "device/standin/tools.hpp"
#include "device/zone.hpp"
#include "platform/host/nvram_admin.hpp"

#include <cstdio>
#include <stdexcept>

namespace kova::device {
namespace {

void log_synchronisation(int asking_process) {
  log_record({{"kind", "device"},
              {"pid", asking_process},
              {"what", "clock synchronised"},
              {"server", host::nvram_find(host::configuration_section, "NTPServerIP").value_or("")}});
}

} // namespace

int run_ntp_script(int asking_process, const Arguments &arguments) {
  try {
    if (arguments.empty())
      log_synchronisation(asking_process);
    else if (arguments == Arguments{"envTZ"})
      store_posix_zone();
    else
      throw std::runtime_error("called otherwise than as \"ntp.sh [envTZ]\"");
    return 0;
  } catch (const std::exception &error) {
    std::fprintf(stderr, "ntp.sh: %s\n", error.what());
    return 1;
  }
}

} // namespace kova::device
