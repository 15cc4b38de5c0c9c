// What a rule can judge. Each kind answers 0 for a value that it accepts, else a negative code, and describes
// itself.
#pragma once

#include "platform/host/characters.hpp"
#include "platform/host/rule_admin.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
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

// Of a rule that takes what a few words say best.
RuleDescription described(std::string text, std::string pattern = "");

// A list of words in a row: "0 off|1 on" are two, each with its meaning; a word has no blank, a meaning may
// be missing.
using Words = std::string_view;

// Decimal digits only. The special words are numbers that mean more than their size.
struct Number {
  std::int64_t min, max;
  int empty = -1, outside = -1;
  std::string_view unit = {};
  Words special = {};
  int judge(std::string_view value) const;
  RuleDescription describe() const;
};

// A whole number of either sign.
struct SignedNumber {
  std::int64_t min, max;
  std::string_view unit = {};
  int judge(std::string_view value) const;
  RuleDescription describe() const;
};

struct OneOf {
  Words words;
  int other = -1;
  int judge(std::string_view value) const;
  RuleDescription describe() const;
};

struct Text {
  std::size_t min, max;
  CharacterClass of;
  int other = -1;
  int judge(std::string_view value) const;
  RuleDescription describe() const;
};

// Of at most 32 characters: a wrong length is told from wrong characters.
struct SnmpCredential {
  std::size_t shortest;
  int judge(std::string_view value) const;
  RuleDescription describe() const;
};

// 8 to 63 printable characters, or the 64 hexadecimal digits of the key itself.
struct WpaPassPhrase {
  int judge(std::string_view value) const;
  RuleDescription describe() const;
};

// A code as the web pages write it ("MEZ_001", "PST_-08", "A_04:30", "N_-3:30"), or an offset ("+13:30").
struct TimeZone {
  int judge(std::string_view value) const;
  RuleDescription describe() const;
};

// Tells a value that is too long from one that is otherwise wrong. The kind decides about the empty value.
template <class Kind>
struct Sized {
  std::size_t longest;
  Kind kind;
  int too_long = -2, invalid = -3;
  int judge(std::string_view value) const {
    if (value.size() > longest) return too_long;
    const int code = kind.judge(value);
    return code == accepted || value.empty() ? code : invalid;
  }
  RuleDescription describe() const {
    RuleDescription description = kind.describe();
    if (!description.length && !description.range)
      description.text += ", of at most " + std::to_string(longest) + " characters";
    return description;
  }
};

template <class Kind>
struct Optional {
  Kind kind;
  int judge(std::string_view value) const { return value.empty() ? accepted : kind.judge(value); }
  RuleDescription describe() const { return kind.describe(); }
};

} // namespace kova::host
