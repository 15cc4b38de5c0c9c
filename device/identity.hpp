// Who the device is: its serial number, chosen or drawn when it is created, and what follows from that. It is
// kept across boots and resets.
#pragma once

#include <cstdint>
#include <string>

namespace kova::device {

struct Identity {
  std::string serial;
  std::string imei;              // 15 digits, the last a check digit
  std::string lan_mac, wlan_mac; // 12 hexadecimal digits; locally administered
  uint64_t seed;                 // of what is the device's own by chance, its radio
};

// The same for the same number. Throws std::runtime_error for what is no serial number: 1 to 32 letters,
// digits, "-", "_" and ".".
Identity identity_of(const std::string &serial);
std::string random_serial(); // "KV" and ten digits

// "02:11:22:33:44:00" of twelve digits.
std::string with_colons(const std::string &mac);

} // namespace kova::device
