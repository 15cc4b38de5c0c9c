// Faults on demand, for the commands that show and set them.
#pragma once

#include "kovactl/output.hpp"

namespace kova::ctl {

class Commands;

void add_device_fault(Commands &group);
// Those of the device, in words; no rows when there are none.
Table fault_rows();

} // namespace kova::ctl
