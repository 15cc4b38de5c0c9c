// Debug messages. They are composed and discarded (dbg_trace): what refused a value shows in a debugger only.
#pragma once

#include <kova/frame.h>

namespace kova {

// What a setter answers to a value that it does not take.
inline int refuse(const char *message) {
  dbg_trace("%s", message);
  return -1;
}

// What a judgement answers to it.
template <typename... What>
bool refused(const char *why, What... what) {
  if constexpr (sizeof...(what) == 0)
    dbg_trace("%s", why);
  else
    dbg_trace(why, what...); // NOLINT(clang-diagnostic-format-nonliteral)
  return false;
}

// With the place that found the error.
inline void trace_error(const char *message, const char *function = __builtin_FUNCTION(),
                        const char *file = __builtin_FILE(), int line = __builtin_LINE()) {
  dbg_trace("[Error][%s %s:%d] %s", function, file, line, message);
}

} // namespace kova
