// What the background programs of the device have in common.
#pragma once

#include "device/daemons.hpp"

#include <functional>

namespace kova::device {

// Leaves the starter and its terminal, unless it is to stay in the foreground, and serves while it holds the
// daemon's pid file. What goes wrong is the first line of the output, which the starter reads, and in the
// messages. Answers the exit status.
int run_in_background(const Daemon &daemon, bool foreground, const std::function<void()> &serve);

// Tells the starter that all is well, and lets others at the device, whose lock a starter hands over (as
// handle 3) so that nobody comes between them; later output goes to the messages.
void announce_ready();
// False when somebody has removed the pid file: with the device, or for another daemon.
bool is_wanted();

} // namespace kova::device
