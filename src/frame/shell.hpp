// Running device commands.
#pragma once

#include <cstddef>

namespace kova {

// Writes text so that a shell reads it unchanged between double quotes. out holds 2 * strlen(text) + 1 bytes.
void escape_for_double_quotes(const char *text, char *out);

// Runs the command; what it answers is not looked at.
void run(const char *command);

// Gives the device time to react.
void pause_for(unsigned int seconds);

} // namespace kova
