// Logging in to an account of the device's web interface.
#pragma once

#include "kovactl/output.hpp"

#include <string>
#include <vector>

namespace kova::ctl {

// The accounts, as CLI choices.
extern const std::vector<std::string> accounts;

// Asks for the password, or takes the first line of standard input, and tells whether the web interface would take it.
ExitStatus log_in(const Output &output, const std::string &account);

} // namespace kova::ctl
