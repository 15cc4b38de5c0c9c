// IPv6 addresses as people write them: without prefix and without zone.
#pragma once

#include <arpa/inet.h>

#include <optional>
#include <string>
#include <string_view>

namespace kova::host {

inline std::optional<in6_addr> parse_ipv6(std::string_view text) {
  in6_addr address;
  if (inet_pton(AF_INET6, std::string(text).c_str(), &address) != 1) return std::nullopt;
  return address;
}

} // namespace kova::host
