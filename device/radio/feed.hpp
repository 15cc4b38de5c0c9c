// The radio and rate feed, seen from outside: kova-radiod, which publishes what the LTE daemon of a living device would.
#pragma once

#include <sys/types.h>

#include <optional>

namespace kova::device {

std::optional<pid_t> feed_pid();
// KOVA_FEED=off in the environment leaves the feed out, for who needs stores in which nothing moves.
bool feed_wanted();
// Starts or stops it, as it is wanted.
void settle_feed();
void stop_feed();

} // namespace kova::device
