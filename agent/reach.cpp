#include "agent/reach.hpp"

#include "device/fd.hpp"

#include <netdb.h>
#include <sys/socket.h>

#include <memory>

namespace kova::agent {

std::string own_address(const std::string &host, const std::string &port) {
  addrinfo hints{}, *answer = nullptr;
  hints.ai_socktype = SOCK_DGRAM; // to connect asks the routes, and sends nothing
  if (host.empty() || getaddrinfo(host.c_str(), port.c_str(), &hints, &answer) != 0) return "";
  const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> found(answer, freeaddrinfo);
  for (const addrinfo *each = found.get(); each != nullptr; each = each->ai_next) {
    const device::Fd socket(::socket(each->ai_family, each->ai_socktype | SOCK_CLOEXEC, 0));
    sockaddr_storage own{};
    socklen_t length = sizeof own;
    auto *own_socket_address = reinterpret_cast<sockaddr *>(&own);
    char text[NI_MAXHOST];
    if (connect(socket.get(), each->ai_addr, each->ai_addrlen) == 0 &&
        getsockname(socket.get(), own_socket_address, &length) == 0 &&
        getnameinfo(own_socket_address, length, text, sizeof text, nullptr, 0, NI_NUMERICHOST) == 0)
      return text;
  }
  return "";
}

} // namespace kova::agent
