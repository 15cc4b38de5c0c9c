#include "agent/log.hpp"

#include "device/log.hpp"

#include <kova/frame.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace kova::agent {

void log(const std::string &what) {
  nlohmann::json record{{"kind", "cwmp"}, {"pid", getpid()}, {"what", what}};
  if (gSecondaryInstance != 0) record["instance"] = "secondary";
  device::log_record(std::move(record));
}

} // namespace kova::agent
