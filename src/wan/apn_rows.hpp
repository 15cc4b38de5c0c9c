// What the rows of the APN profiles say of their values.
#pragma once

#include "src/frame/conditions.hpp"

namespace kova::wan {

// Does the text begin with a number of the range? Unlike number_within, a text without a number is none.
template <long least, long most>
bool begins_within(const char *value) {
  char *end = nullptr;
  const long number = std::strtol(value, &end, 10);
  return end != value && number >= least && number <= most;
}
template <long least, long most>
inline constexpr Condition within = {begins_within<least, most>, false, nullptr, least, most};

// The checker takes any text: the setter judges.
inline constexpr Condition profile_switch = {[](const char *value) { return *value != '\0'; }, false, "0 1"};
inline constexpr Condition auth_type = within<1, 4>, pdn_type = within<0, 2>, packet_size = within<576, 1500>,
                           bearer_use = within<0, 3>, vlan_id = within<0, 4094>;

} // namespace kova::wan
