// The kernel's answers about network interfaces, scripted.
#include "fake.hpp"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>

using fake::platform;

namespace {

int answer_address(sockaddr &into, const std::string &address) {
  if (address.empty()) return -1;
  sockaddr_in internet = {};
  internet.sin_family = AF_INET;
  inet_pton(AF_INET, address.c_str(), &internet.sin_addr);
  std::memcpy(&into, &internet, sizeof into);
  return 0;
}

int answer_ethtool(const fake::Interface &interface, void *command) {
  if (static_cast<ethtool_value *>(command)->cmd == ETHTOOL_GLINK) {
    static_cast<ethtool_value *>(command)->data = interface.speed < 0 ? 0 : 1;
    return 0;
  }
  auto *settings = static_cast<ethtool_cmd *>(command);
  const int speed = interface.speed < 0 ? 10 : interface.speed; // a link that is down still has a setting
  settings->speed = static_cast<uint16_t>(speed & 0xFFFF);
  settings->speed_hi = static_cast<uint16_t>(speed >> 16);
  return 0;
}

int list_interfaces(ifconf *list) {
  const std::size_t room = static_cast<std::size_t>(list->ifc_len) / sizeof(ifreq);
  const std::size_t count = std::min(room, platform.interfaces.size());
  for (std::size_t i = 0; i < count; ++i)
    std::snprintf(list->ifc_req[i].ifr_name, IFNAMSIZ, "%s", platform.interfaces[i].name.c_str());
  list->ifc_len = static_cast<int>(count * sizeof(ifreq));
  return 0;
}

int answer_mac(sockaddr &into, const std::string &mac) {
  auto *byte = reinterpret_cast<unsigned char *>(into.sa_data);
  return std::sscanf(mac.c_str(), "%hhx:%hhx:%hhx:%hhx:%hhx:%hhx", byte, byte + 1, byte + 2, byte + 3,
                     byte + 4, byte + 5) == 6
             ? 0
             : -1;
}

} // namespace

extern "C" {

int ioctl(int, unsigned long request, ...) noexcept {
  va_list arguments;
  va_start(arguments, request);
  void *about = va_arg(arguments, void *);
  va_end(arguments);
  if (request == SIOCGIFCONF) return list_interfaces(static_cast<ifconf *>(about));

  auto *asked = static_cast<ifreq *>(about);
  const fake::Interface *interface = fake::find_interface(asked->ifr_name);
  errno = ENODEV;
  if (interface == nullptr) return -1;
  switch (request) {
  case SIOCGIFFLAGS:
    return 0;
  case SIOCGIFADDR:
    return answer_address(asked->ifr_addr, interface->address);
  case SIOCGIFNETMASK:
    return answer_address(asked->ifr_netmask, interface->mask);
  case SIOCGIFHWADDR:
    return answer_mac(asked->ifr_hwaddr, interface->mac);
  case SIOCETHTOOL:
    return answer_ethtool(*interface, asked->ifr_data);
  default:
    return -1;
  }
}

int getifaddrs(ifaddrs **list) noexcept {
  *list = nullptr;
  for (const fake::Interface &interface : platform.interfaces)
    *list = new ifaddrs{*list, strdup(interface.name.c_str()), 0, nullptr, nullptr, {nullptr}, nullptr};
  return 0;
}

void freeifaddrs(ifaddrs *list) noexcept {
  while (list != nullptr) {
    ifaddrs *next = list->ifa_next;
    free(list->ifa_name);
    delete list;
    list = next;
  }
}

} // extern "C"
