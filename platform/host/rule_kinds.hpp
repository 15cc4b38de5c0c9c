// What a rule can judge. Each kind answers 0 for a value that it accepts, else a negative code.
#pragma once

#include <cstddef>
#include <string_view>

namespace kova::host {

// The codes that most rules share; a row names its own where they differ.
enum Code : int {
  accepted = 0,
  empty_value = -1, // also: any fault of a rule that tells none apart
  bad_number = -2,
  bad_format = -3,
  bad_network = -4, // a netmask that is none, or an address outside the private networks
  bad_host = -5,    // an address that no host of the wanted kind can have
};

// Decimal digits only.
struct Number {
  long min, max;
  int empty = -1, outside = -1;
  int judge(std::string_view value) const;
};

// One of some words, which stand here separated by blanks.
struct OneOf {
  std::string_view words;
  int judge(std::string_view value) const;
};

using CharacterClass = bool (*)(char);
bool printable(char c); // of ASCII, the blank too
bool host_name_character(char c);

struct Text {
  std::size_t min, max;
  CharacterClass allowed;
  int judge(std::string_view value) const;
};

// 8 to 63 printable characters, or the 64 hexadecimal digits of the key itself.
struct WpaPassPhrase {
  int judge(std::string_view value) const;
};

struct Ipv4Address {
  enum class Of { lan_host, server };
  Of of;
  int judge(std::string_view value) const;
};

struct Ipv4Netmask {
  int judge(std::string_view value) const;
};

// An address of a server, or a name: labels of letters, digits and inner hyphens.
struct ServerAddressOrName {
  int judge(std::string_view value) const;
};

} // namespace kova::host
