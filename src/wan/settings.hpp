// What several settings of the WAN have in common.
#pragma once

#include "src/frame/settings.hpp"

namespace kova::wan {

// The data model's getters want room for an answer.
inline int tell(Key key, char *buf, unsigned int buflen) {
  return buflen < 1 ? -1 : answer_stored(key, buf, buflen);
}

// The MTU is one setting with two parameters, each of which announces it in its own words.
inline int set_mtu(Key key, const char *value, Rule rule, void (*announce)()) {
  value = text_or_empty(value);
  if (!passes(rule, value)) return -1;
  store(key, value);
  announce();
  return 0;
}

} // namespace kova::wan
