// IPv4 addresses as people write them: four decimal numbers joined by dots.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace kova::host {

enum class QuadFault { none, number, format };

struct Quad {
  QuadFault fault;
  std::uint32_t address; // host order; 0 with a fault
};

// Three digits at most and no leading zero: a number with one is octal for some readers of addresses.
constexpr Quad parse_quad(std::string_view text) {
  std::uint32_t address = 0;
  bool in_range = true;
  for (int part = 0; part < 4; ++part) {
    if (part > 0) {
      if (!text.starts_with('.')) return {QuadFault::format, 0};
      text.remove_prefix(1);
    }
    unsigned number = 0;
    std::size_t digits = 0;
    for (; digits < text.size() && text[digits] >= '0' && text[digits] <= '9'; ++digits) {
      if (digits == 3 || (digits > 0 && number == 0)) return {QuadFault::format, 0};
      number = number * 10 + static_cast<unsigned>(text[digits] - '0');
    }
    if (digits == 0) return {QuadFault::format, 0};
    in_range = in_range && number <= 255;
    address = address << 8 | (number & 255U);
    text.remove_prefix(digits);
  }
  if (!text.empty()) return {QuadFault::format, 0};
  return in_range ? Quad{QuadFault::none, address} : Quad{QuadFault::number, 0};
}

constexpr bool in_network(std::uint32_t address, std::uint32_t network, int prefix) {
  return (address ^ network) >> (32 - prefix) == 0;
}

constexpr bool is_private(std::uint32_t address) {
  return in_network(address, 10U << 24, 8) || in_network(address, 172U << 24 | 16U << 16, 12) ||
         in_network(address, 192U << 24 | 168U << 16, 16);
}

constexpr bool is_loopback(std::uint32_t address) {
  return address >> 24 == 127;
}

// Not "this network", loopback, multicast or reserved.
constexpr bool is_unicast(std::uint32_t address) {
  const std::uint32_t first = address >> 24;
  return first != 0 && !is_loopback(address) && first < 224;
}

// Ones, then zeros, and at least one of each.
constexpr bool is_netmask(std::uint32_t mask) {
  const std::uint32_t zeros = ~mask;
  return mask != 0 && zeros != 0 && (zeros & (zeros + 1)) == 0;
}

} // namespace kova::host
