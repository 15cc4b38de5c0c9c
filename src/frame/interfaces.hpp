// What is told of network interfaces.
#pragma once

namespace kova {

// Answers an interface's IPv4 address, "" while it has none; always terminated.
int answer_interface_address(const char *ifname, char *buf, unsigned int buflen);

} // namespace kova
