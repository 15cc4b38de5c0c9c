// The device's own tools that do more than log what they were asked. Each answers its exit status.
#pragma once

#include <string>
#include <vector>

namespace kova::device {

using Arguments = std::vector<std::string>;

// ntp.sh: stores the zone text with "envTZ"; without arguments "synchronises" the clock, which is the host's
// and stays as it is.
int run_ntp_script(int asking_process, const Arguments &arguments);
// maintenance.cgi: "exportlog" leaves the last records of the device log in /tmp/M4412_Log.dat, as lines for
// people.
int run_maintenance(const Arguments &arguments);

} // namespace kova::device
