// What a rule can judge. Each kind answers 0 for a value that it accepts, else a negative code.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kova::host {

// The codes that most rules share; a row names its own where they differ.
enum Code : int {
  accepted = 0,
  empty_value = -1, // also: any fault of a rule that tells none apart
  bad_value = -2,
  bad_number = -2,
  bad_format = -3,
  bad_network = -4, // a netmask that is none, or an address outside the private networks
  bad_host = -5,    // an address that no host of the wanted kind can have
};

// Decimal digits only.
struct Number {
  std::int64_t min, max;
  int empty = -1, outside = -1;
  int judge(std::string_view value) const;
};

// One of some words, which stand here separated by blanks.
struct OneOf {
  std::string_view words;
  int other = -1;
  int judge(std::string_view value) const;
};

using CharacterClass = bool (*)(char);
bool printable(char c); // of ASCII, the blank too
bool host_name_character(char c);

struct Text {
  std::size_t min, max;
  CharacterClass allowed;
  int other = -1;
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
  bool may_be_empty = false;
  int judge(std::string_view value) const;
};

// Of http or https, with a server's address or name and no user in front of it: who looks for the server's name would
// take the user for it.
struct WebUrl {
  int judge(std::string_view value) const;
};

// A code as the web pages write it ("MEZ_001", "PST_-08", "A_04:30", "N_-3:30"), or an offset ("+13:30").
struct TimeZone {
  int judge(std::string_view value) const;
};

} // namespace kova::host
