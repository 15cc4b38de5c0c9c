// What the checkers of grouped parameters do with an accepted pair.
#pragma once

#include <kova/transaction.h>

namespace kova {

// A grouped parameter's place in the check list: its group's flag and its slot.
struct Place {
  unsigned char &touched;
  PendingValue &slot;
};

// Parks the pair for the batch validation and marks its group as touched. Answers 0, as an accepting checker
// does.
inline int park(Place place, const char *name, const char *value) {
  pvcl_set_slot(&place.slot, name, value);
  place.touched = 1;
  return 0;
}

} // namespace kova
