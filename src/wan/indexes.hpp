// The indexes of the WAN device, its connection and its IP connection: there is one of each.
#pragma once

#include "src/frame/trace.hpp"

namespace kova::wan {

inline bool is_1(int index, const char *what) {
  if (index == 1) return true;
  dbg_trace("The %s index (%d) is out of range!\n", what, index);
  return false;
}

inline bool indexes_are_1(int dev, int conn = 1, int ipconn = 1) {
  return is_1(dev, "device") && is_1(conn, "connection") && is_1(ipconn, "IP connection");
}

} // namespace kova::wan
