// What this process told the device's console.
#pragma once

#include <string>
#include <vector>

#pragma GCC visibility push(default)
namespace kova::host {

// The lines since they were last taken, without their ends; of very many the last ones.
std::vector<std::string> take_console_lines();
// Whether the lines are kept from standard error.
void console_quiet(bool on);

} // namespace kova::host
#pragma GCC visibility pop
