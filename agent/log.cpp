#include "agent/log.hpp"

#include "device/log.hpp"

#include <kova/frame.h>
#include <unistd.h>

namespace kova::agent {

void log(const std::string &what) {
  device::LogFields record{{"kind", "cwmp"}, {"pid", getpid()}, {"what", what}};
  if (gSecondaryInstance != 0) record.push_back({"instance", "secondary"});
  device::log_record(record);
}

} // namespace kova::agent
