#include "device/identity.hpp"

#include "device/formatted.hpp"

#include <algorithm>
#include <cstdint>
#include <random>
#include <stdexcept>
#include <string_view>

namespace kova::device {
namespace {

// FNV-1a: the same on every host, unlike std::hash.
uint64_t hash_of(std::string_view text) {
  uint64_t hash = 0xcbf29ce484222325;
  for (const char c : text)
    hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
  return hash ^ hash >> 32;
}

// Differs between serial numbers that differ in the number at their end, and so do its last twenty bits between
// a million of them: the devices of a fleet have no address in common.
uint64_t number_of(std::string_view serial) {
  constexpr std::size_t most_digits = 18;
  const std::size_t last_other = serial.find_last_not_of("0123456789");
  std::string_view digits = last_other == std::string_view::npos ? serial : serial.substr(last_other + 1);
  digits.remove_prefix(digits.size() - std::min(digits.size(), most_digits));
  uint64_t number = 0;
  for (const char digit : digits)
    number = number * 10 + static_cast<uint64_t>(digit - '0');
  return hash_of(serial.substr(0, serial.size() - digits.size())) + number;
}

// The Luhn digit: with it, the sum of all digits, every second from the right doubled, ends in 0.
char check_digit(const std::string &digits) {
  int sum = 0;
  bool doubled = true;
  for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, doubled = !doubled) {
    const int value = (*digit - '0') * (doubled ? 2 : 1);
    sum += value > 9 ? value - 9 : value;
  }
  return static_cast<char>('0' + (10 - sum % 10) % 10);
}

// In the range of test equipment.
std::string imei_of(uint64_t number) {
  const std::string digits = formatted("00101000%06u", static_cast<unsigned>(number % 1'000'000));
  return digits + check_digit(digits);
}

bool belongs_to_serial(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-' || c == '_' ||
         c == '.';
}

} // namespace

Identity identity_of(const std::string &serial) {
  constexpr std::size_t longest = 32;
  if (serial.empty() || serial.size() > longest || !std::ranges::all_of(serial, belongs_to_serial))
    throw std::runtime_error("\"" + serial +
                             "\" is no serial number: 1 to 32 letters, digits, \"-\", \"_\" and \".\"");
  const uint64_t number = number_of(serial);
  const auto mac = [number](unsigned port) {
    return formatted("021122%05X%u", static_cast<unsigned>(number & 0xFFFFFU), port);
  };
  return {serial, imei_of(number), mac(0), mac(1), hash_of(serial)};
}

std::string random_serial() {
  std::random_device chance;
  return formatted("KV%010llu",
                   static_cast<unsigned long long>((uint64_t{chance()} << 32 | chance()) % 10'000'000'000));
}

std::string with_colons(const std::string &mac) {
  std::string text = mac;
  for (std::size_t at = 10; at > 0; at -= 2)
    text.insert(at, ":");
  return text;
}

} // namespace kova::device
