// The host's IPv4 routing table and addresses, which are what the device shows as its own.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kova::device {

struct Route {
  std::string interface;
  uint32_t destination, gateway, mask; // in network order
  unsigned flags, references, use;
  int metric;

  bool is_default() const { return destination == 0 && mask == 0; }
};

std::vector<Route> host_routes();
// Interface of the first default route, else the loopback interface.
std::string default_interface();

struct InterfaceAddress {
  std::string address, netmask; // dotted; "" without one
};
InterfaceAddress address_of(const std::string &interface);

} // namespace kova::device
