// What the stores could not keep: accessors do not tell.
#pragma once

#include "platform/host/nvram_admin.hpp"
#include "platform/host/tree_admin.hpp"

namespace kova::request {

class FailedWrites {
public:
  // Since this was made.
  bool any() const { return count() != before_; }

private:
  static unsigned count() { return host::nvram_failed_writes() + host::tree_failed_writes(); }
  unsigned before_ = count();
};

} // namespace kova::request
