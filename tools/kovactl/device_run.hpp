// A command of the group "device" that stands in a file of its own.
#pragma once

namespace kova::ctl {

class Commands;

void add_device_run(Commands &group);

} // namespace kova::ctl
