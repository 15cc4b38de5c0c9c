#include "src/management/reach.hpp"

#include "src/frame/text.hpp"

#include <kova/frame.h>
#include <kova/management.h>

#include <cstdio>

namespace kova::management {

void management_interface(char (&name)[interface_name_size]) {
  if (gBindInterface[0] != '\0' && check_net_interface(gBindInterface) == 0) {
    std::snprintf(name, sizeof name, "%s", gBindInterface);
    return;
  }
  constexpr int a_name = 1, an_address = 2, in_no_local_network = 1;
  Text url;
  kovaGetTR069ManagementServerURL(url.chars, Text::size - 1);
  char host[128] = {};
  get_hostname_from_http_url(url, host, sizeof host - 1);
  switch (hostname_type(host)) {
  case an_address:
    if (get_route_ifname(host, name, sizeof name - 1) != in_no_local_network) break;
    [[fallthrough]];
  case a_name:
    get_default_route_if(name, sizeof name);
    break;
  default:
    break;
  }
}

} // namespace kova::management
