// Where this machine is reached.
#pragma once

#include <string>

namespace kova::agent {

// The address of this machine from which the host is reached; "" when it is not. A name is looked up.
std::string own_address(const std::string &host, const std::string &port);

} // namespace kova::agent
