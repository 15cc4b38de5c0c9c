// What the device as a whole is asked to do. It is noted, and done when the session is over.
#include "agent/methods.hpp"
#include "agent/names.hpp"

#include <cstdio>
#include <ctime>

namespace kova::agent {

void reboot(Store &store, const pugi::xml_node &call, pugi::xml_node) {
  const std::string key = text_argument(call, "CommandKey", longest_key);
  store.change([&key](Transaction &change) { change.put(stored::reboot + change.serial(), key); });
}

void factory_reset(Store &store, const pugi::xml_node &, pugi::xml_node) {
  store.change([](Transaction &change) { change.put(stored::factory_reset, ""); });
}

void schedule_inform(Store &store, const pugi::xml_node &call, pugi::xml_node) {
  const std::string key = text_argument(call, "CommandKey", longest_key);
  const std::uint32_t delay = number_argument(call, "DelaySeconds");
  if (delay == 0) throw invalid_arguments("DelaySeconds must be more than 0");
  store.change([&](Transaction &change) {
    char due[24];
    std::snprintf(due, sizeof due, "%012lld/", static_cast<long long>(std::time(nullptr)) + delay);
    change.put(stored::schedule + (due + change.serial()), key);
  });
}

} // namespace kova::agent
