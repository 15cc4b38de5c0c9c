// Rules for the addresses that the firewall, the routes and the telephone line are given.
#pragma once

#include "platform/host/rule_kinds.hpp"

#include <string_view>

namespace kova::host {

// Six pairs of hexadecimal digits in either case, joined by colons.
struct MacAddress {
  int judge(std::string_view value) const;
};

// Any IPv4 address.
struct DottedQuad {
  int judge(std::string_view value) const;
};

// Where a route leads: a network of hosts, a host, or 0.0.0.0 for everywhere.
struct RouteDestination {
  int judge(std::string_view value) const;
};

// As a netmask of the LAN, but also that of everywhere and that of a single host.
struct RouteNetmask {
  int judge(std::string_view value) const;
};

// A host of either family that may reach the device. The answer bad_network says that it is on the LAN side: of the
// network of the stored LAN address, or of an IPv6 network that is not routed into the world.
struct AccessHost {
  int judge(std::string_view value) const;
};

// A server's address of either family, or its name.
struct AnyServer {
  int judge(std::string_view value) const;
};

} // namespace kova::host
