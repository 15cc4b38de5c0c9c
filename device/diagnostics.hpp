// The programs of the device's diagnostics tests. Each management instance has one of each kind.
#pragma once

#include <array>
#include <string_view>

namespace kova::device {

constexpr std::array<std::string_view, 10> diagnostics_tools = {
    "download_diag",     "upload_diag",     "udpechoplus_server",     "ping_diag",     "traceroute_diag",
    "sec_download_diag", "sec_upload_diag", "sec_udpechoplus_server", "sec_ping_diag", "sec_traceroute_diag",
};

// In place of options: they come over the input, each word ended by a NUL.
constexpr std::string_view words_from_input = "-";

// What sets the secondary instance's program, files and keys apart.
constexpr std::string_view secondary_program = "sec_";

// "ping_diag" of "sec_ping_diag".
constexpr std::string_view without_instance(std::string_view tool) {
  return tool.starts_with(secondary_program) ? tool.substr(secondary_program.size()) : tool;
}

} // namespace kova::device
