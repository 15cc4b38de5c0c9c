// Asking the kernel about network interfaces.
#pragma once

#include <net/if.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>

namespace kova {

// A datagram socket to ask the kernel about interfaces.
class InterfaceQuery {
public:
  InterfaceQuery() : fd_(socket(AF_INET, SOCK_DGRAM, 0)) {}
  ~InterfaceQuery() {
    if (fd_ >= 0) close(fd_);
  }
  InterfaceQuery(const InterfaceQuery &) = delete;
  InterfaceQuery &operator=(const InterfaceQuery &) = delete;

  bool ask(unsigned long request, void *about) const { return fd_ >= 0 && ioctl(fd_, request, about) >= 0; }
  static ifreq named(const char *ifname) {
    ifreq about = {};
    std::strncpy(about.ifr_name, ifname, IFNAMSIZ - 1);
    return about;
  }

private:
  int fd_;
};

inline in_addr address_in(const sockaddr &address) {
  sockaddr_in internet;
  std::memcpy(&internet, &address, sizeof internet);
  return internet.sin_addr;
}

} // namespace kova
