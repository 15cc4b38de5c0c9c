// What both ends of the service-control channel agree on, beside the requests.
#pragma once

#include <cstdint>

namespace kova::channel {

constexpr char magic[4] = {'M', 'R', 'H', 'D'}; // begins each record
constexpr uint32_t most_payload = 2048;         // bytes

// Module numbers.
constexpr uint32_t daemon_type = 1, agent_type = 2;

// Commands of the message layer itself.
constexpr uint32_t confirmation = 1, connect_announcement = 0x10000002;

} // namespace kova::channel
