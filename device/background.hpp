// What the background programs of the device have in common.
#pragma once

#include "device/fd.hpp"

namespace kova::device {

// The whole of main(): leaves the starter and its terminal, unless called with --foreground, and serves. What goes wrong
// is the first line of the output, which the starter reads, and in the messages. Answers the exit status.
int run_in_background(const char *name, int argc, char **argv, void (*serve)());

// Readable when the program is asked to end.
Fd end_signals();
// Tells the starter that all is well; later output goes to the messages.
void announce_ready();

} // namespace kova::device
