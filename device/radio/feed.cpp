#include "device/radio/feed.hpp"

#include "device/service.hpp"

#include <cstdlib>
#include <string_view>

namespace kova::device {

std::optional<pid_t> feed_pid() {
  return daemon_pid(radio_feed);
}

bool feed_wanted() {
  const char *variable = std::getenv("KOVA_FEED");
  return variable == nullptr || std::string_view(variable) != "off";
}

void settle_feed() {
  if (!feed_wanted())
    stop_feed();
  else if (!feed_pid())
    start_daemon(radio_feed);
}

void stop_feed() {
  stop_daemon(radio_feed);
}

} // namespace kova::device
