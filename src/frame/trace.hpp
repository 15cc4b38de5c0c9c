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
  dbg_trace(why, what...); // NOLINT(clang-diagnostic-format-nonliteral)
  return false;
}

} // namespace kova

#define KOVA_TRACE_ERROR(message) dbg_trace("[Error][%s %s:%d] " message, __func__, __FILE_NAME__, __LINE__)
