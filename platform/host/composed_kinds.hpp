// Rules made of a rule and one condition more.
#pragma once

#include "platform/host/rule_kinds.hpp"

#include <cstddef>
#include <string_view>

namespace kova::host {

// Tells a value that is too long from one that is otherwise wrong. The rule decides about the empty value.
template <class Rule>
struct Sized {
  std::size_t longest;
  Rule rule;
  int too_long = -2, invalid = -3;
  int judge(std::string_view value) const {
    if (value.size() > longest) return too_long;
    const int code = rule.judge(value);
    return code == accepted || value.empty() ? code : invalid;
  }
};

template <class Rule>
struct Optional {
  Rule rule;
  int judge(std::string_view value) const { return value.empty() ? accepted : rule.judge(value); }
};

} // namespace kova::host
