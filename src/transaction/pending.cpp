// The pending value check list.
#include "src/frame/text.hpp"

#include <kova/transaction.h>

#include <cstdlib>
#include <cstring>

PendingValueCheckList gPVCL = {};

namespace {

// Copies before it frees, so that a slot may be given its own texts. Without memory the text is NULL, which
// the readers below answer as "".
void replace(char *&owned, const char *text) {
  char *copy = strdup(kova::text_or_empty(text));
  std::free(owned);
  owned = copy;
}

void drop(char *&owned) {
  std::free(owned);
  owned = nullptr;
}

} // namespace

void pvcl_free_slot(PendingValue *slot) {
  if (slot == nullptr) return;
  drop(slot->name);
  drop(slot->value);
}

int pvcl_set_slot(PendingValue *slot, const char *name, const char *value) {
  if (slot == nullptr) return -1;
  // The name may be the old value and the other way round: both copies are made before either old text goes.
  PendingValue replacement = {};
  replace(replacement.name, name);
  replace(replacement.value, value);
  pvcl_free_slot(slot);
  *slot = replacement;
  return 0;
}

int pvcl_set_slot_value(PendingValue *slot, const char *value) {
  if (slot == nullptr) return -1;
  replace(slot->value, value);
  return 0;
}

const char *pvcl_slot_name(const PendingValue *slot) {
  return slot == nullptr ? "" : kova::text_or_empty(slot->name);
}

const char *pvcl_slot_value(const PendingValue *slot) {
  return slot == nullptr ? "" : kova::text_or_empty(slot->value);
}
