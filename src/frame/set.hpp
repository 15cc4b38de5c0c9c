// What most setters do.
#pragma once

#include "src/frame/settings.hpp"

namespace kova {

// The rule alone decides, about an empty value too.
inline int set_by_rule(Key key, const char *value, Rule rule) {
  value = text_or_empty(value);
  if (!passes(rule, value)) return -1;
  store(key, value);
  return 0;
}

} // namespace kova
