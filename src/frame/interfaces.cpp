// Network interfaces: addresses, routes, link speed.
#include "src/frame/interfaces.hpp"

#include "src/frame/interface_query.hpp"
#include "src/frame/text.hpp"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <kova/frame.h>
#include <linux/ethtool.h>
#include <linux/sockios.h>

#include <cstdio>
#include <cstring>

using kova::address_in;
using kova::InterfaceQuery;

namespace {

bool ask_ethtool(const InterfaceQuery &kernel, const char *ifname, void *command) {
  ifreq about = InterfaceQuery::named(ifname);
  about.ifr_data = static_cast<char *>(command);
  return kernel.ask(SIOCETHTOOL, &about);
}

} // namespace

int get_interface_ip(const char *ifname, char *out, int outlen) {
  if (kova::is_empty(ifname) || out == nullptr || outlen < 1) return -1;
  ifreq about = InterfaceQuery::named(ifname);
  if (!InterfaceQuery().ask(SIOCGIFADDR, &about)) return -1;
  std::snprintf(out, static_cast<std::size_t>(outlen), "%s", inet_ntoa(address_in(about.ifr_addr)));
  return 0;
}

namespace kova {

int answer_interface_address(const char *ifname, char *buf, unsigned int buflen) {
  char address[INET_ADDRSTRLEN] = {};
  get_interface_ip(ifname, address, sizeof address);
  return answer_terminated(address, buf, buflen);
}

} // namespace kova

int get_default_route_if(char *out, int outlen) {
  if (out == nullptr || outlen < 1) return 0;
  trim_string_newline(shell_cmd("route | awk '/default/{print $8}'", out, outlen));
  return 0;
}

int check_net_interface(const char *ifname) {
  if (kova::is_empty(ifname)) return -1;
  ifaddrs *list = nullptr;
  if (getifaddrs(&list) != 0) return -1;
  bool found = false;
  for (const ifaddrs *entry = list; entry != nullptr && !found; entry = entry->ifa_next)
    found = kova::equal(entry->ifa_name, ifname);
  freeifaddrs(list);
  return found ? 0 : -1;
}

int get_route_ifname(const char *ip, char *out, int outlen) {
  constexpr int found = 0, none_matches = 1, failed = -1;
  if (kova::is_empty(ip) || out == nullptr || outlen < 1) return failed;

  const InterfaceQuery kernel;
  ifreq entries[16] = {};
  ifconf list = {};
  list.ifc_len = sizeof entries;
  list.ifc_req = entries;
  if (!kernel.ask(SIOCGIFCONF, &list)) return failed;

  const in_addr_t wanted = inet_addr(ip);
  for (int i = list.ifc_len / static_cast<int>(sizeof(ifreq)) - 1; i >= 0; --i) {
    // An interface that is down takes part like any other; its flags need only be readable.
    ifreq flags = entries[i], address = entries[i], mask = entries[i];
    if (!kernel.ask(SIOCGIFFLAGS, &flags) || !kernel.ask(SIOCGIFADDR, &address) ||
        !kernel.ask(SIOCGIFNETMASK, &mask))
      return failed;
    const in_addr_t difference = wanted ^ address_in(address.ifr_addr).s_addr;
    if ((difference & address_in(mask.ifr_netmask).s_addr) == 0) {
      kova::answer(entries[i].ifr_name, out, static_cast<unsigned int>(outlen));
      return found;
    }
  }
  return none_matches;
}

int getLanSpeed(const char *ifname) {
  const InterfaceQuery kernel;
  ethtool_value link = {};
  link.cmd = ETHTOOL_GLINK;
  ethtool_cmd settings = {};
  settings.cmd = ETHTOOL_GSET;
  const char *name = kova::text_or_empty(ifname);
  if (!ask_ethtool(kernel, name, &link) || link.data == 0 || !ask_ethtool(kernel, name, &settings)) {
    dbg_trace("[Error][%s %s:%d] get lan link status error!\n", __func__, __FILE_NAME__, __LINE__);
    return -1;
  }
  return static_cast<int>(static_cast<uint32_t>(settings.speed_hi) << 16 | settings.speed);
}

const char *getLanIfName(void) {
  return "br0";
}

int IPRangeCheck(const char *a, const char *mask, const char *b, const char *c) {
  const auto network = [mask = inet_addr(kova::text_or_empty(mask))](const char *address) {
    return inet_addr(kova::text_or_empty(address)) & mask;
  };
  return network(a) == network(b) && network(a) == network(c) ? 1 : 0;
}
