#include "device/routes.hpp"

#include <algorithm>
#include <fstream>
#include <limits>
#include <sstream>

namespace kova::device {

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

} // namespace kova::device
