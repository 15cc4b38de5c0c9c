// The agent's lines in the device log.
#pragma once

#include <string>

namespace kova::agent {

// In words, and without a secret.
void log(const std::string &what);

} // namespace kova::agent
