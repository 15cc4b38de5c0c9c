// Rules for addresses, and for names of hosts.
#pragma once

#include "platform/host/rule_kinds.hpp"

#include <string_view>

namespace kova::host {

struct Ipv4Address {
  enum class Of { lan_host, server };
  Of of;
  int judge(std::string_view value) const;
  RuleDescription describe() const;
};

struct Ipv4Netmask {
  int judge(std::string_view value) const;
  RuleDescription describe() const;
};

// An address of a server, or a name: labels of letters, digits and inner hyphens.
struct ServerAddressOrName {
  int judge(std::string_view value) const;
  RuleDescription describe() const;
};

// Of http or https, with a server's address or name and no user in front of it: who looks for the server's
// name would take the user for it. The server may be on this machine.
struct WebUrl {
  int judge(std::string_view value) const;
  RuleDescription describe() const;
};

// Six pairs of hexadecimal digits in either case, joined by colons.
struct MacAddress {
  int judge(std::string_view value) const;
  RuleDescription describe() const;
};

// Any IPv4 address.
struct DottedQuad {
  int judge(std::string_view value) const;
  RuleDescription describe() const;
};

// Where a route leads: a network of hosts, a host, or 0.0.0.0 for everywhere.
struct RouteDestination {
  int judge(std::string_view value) const;
  RuleDescription describe() const;
};

// As a netmask of the LAN, but also that of everywhere and that of a single host.
struct RouteNetmask {
  int judge(std::string_view value) const;
  RuleDescription describe() const;
};

// A host of either family that may reach the device. The answer bad_network says that it is on the LAN side:
// of the network of the stored LAN address, or of an IPv6 network that is not routed into the world.
struct AccessHost {
  int judge(std::string_view value) const;
  RuleDescription describe() const;
};

// A server's address of either family, or its name.
struct AnyServer {
  int judge(std::string_view value) const;
  RuleDescription describe() const;
};

// Where a diagnostics test can be led: to an address of either family, this device's own too, or to a name.
struct TestHost {
  int judge(std::string_view value) const;
  RuleDescription describe() const;
};

} // namespace kova::host
