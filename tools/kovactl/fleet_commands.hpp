// The commands of the group "fleet".
#pragma once

#include "kovactl/command.hpp"

#include <string>

namespace kova::ctl {

void add_fleet_life(Commands &group); // up, down, remove
void add_fleet_status(Commands &group);
void add_fleet_exec(Commands &group); // exec, get

// Their option --dir.
void add_fleet_place(const Command &command, std::string &directory);

} // namespace kova::ctl
