// What the device's directory holds besides the stores: the programs of its PATH and the files of its root.
#pragma once

#include <filesystem>
#include <string_view>

namespace kova::device {

// A program of this installation that is no command for people. Throws std::runtime_error when it is not
// there.
std::filesystem::path helper_program(std::string_view name);

// Lays out bin/ and the programs under root/; `like` is a device that may share its links, or "".
void lay_out_programs(const std::filesystem::path &like = {});
// False when the laid-out stand-ins are missing or are those of another installation.
bool programs_are_ours();

// The files that the router's kernel, driver and daemons would show right after a boot; empties root/tmp.
void lay_out_files();

} // namespace kova::device
