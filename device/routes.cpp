#include "device/routes.hpp"

#include <arpa/inet.h>
#include <ifaddrs.h>

#include <algorithm>
#include <fstream>
#include <limits>
#include <memory>
#include <sstream>

namespace kova::device {
namespace {

std::string dotted(const sockaddr *address) {
  if (address == nullptr || address->sa_family != AF_INET) return "";
  char text[INET_ADDRSTRLEN];
  return inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in *>(address)->sin_addr, text, sizeof text);
}

} // namespace

std::vector<Route> host_routes() {
  std::ifstream table("/proc/net/route");
  table.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
  std::vector<Route> routes;
  for (std::string line; std::getline(table, line);) {
    std::istringstream fields(line);
    Route route;
    fields >> route.interface >> std::hex >> route.destination >> route.gateway >> route.flags >> std::dec >>
        route.references >> route.use >> route.metric >> std::hex >> route.mask;
    if (fields) routes.push_back(route);
  }
  return routes;
}

std::string default_interface() {
  const auto routes = host_routes();
  const auto found = std::ranges::find_if(routes, &Route::is_default);
  return found == routes.end() ? "lo" : found->interface;
}

InterfaceAddress address_of(const std::string &interface) {
  ifaddrs *first = nullptr;
  if (getifaddrs(&first) != 0) return {};
  const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> all(first, freeifaddrs);
  for (const ifaddrs *one = first; one != nullptr; one = one->ifa_next)
    if (one->ifa_name == interface && one->ifa_addr != nullptr && one->ifa_addr->sa_family == AF_INET)
      return {dotted(one->ifa_addr), dotted(one->ifa_netmask)};
  return {};
}

} // namespace kova::device
