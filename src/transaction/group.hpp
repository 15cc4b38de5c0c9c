// What a group of a request is: values that are judged as a whole. Each family brings its groups; src/batch lists them.
#pragma once

#include "src/frame/settings.hpp"

#include <kova/transaction.h>

#include <span>

namespace kova::transaction {

// The agent's buffer for the names of the parameters that took part in a refusal, separated by ";".
class FaultNames {
public:
  FaultNames(char *buffer, int size) : buffer_(buffer), size_(size) {}
  // Without a bound: the agent's buffer holds all names of a group. Only the WAN/APN group stays within the
  // size.
  void add(const char *name);
  void add_within_size(const char *name);

private:
  char *buffer_;
  int size_;
};

// A key of the group's section, of both instances or of each its own.
class StoredKey {
public:
  constexpr StoredKey(const char *key) : key_(key), own_(false) {}
  constexpr StoredKey(OwnKey key) : own_key_(key), own_(true) {}
  const char *current() const { return own_ ? own_key_.current() : key_; }

private:
  union {
    const char *key_;
    OwnKey own_key_;
  };
  bool own_;
};

using List = PendingValueCheckList;

// A slot of the check list, and where its value comes from when the request did not set it.
struct GroupedValue {
  PendingValue List::*member;
  const char *label = nullptr; // begins with "Local", unlike a name of a request; nullptr: nothing stands in
  StoredKey key = "";
  const char *if_empty = ""; // stands in for an empty stored value

  PendingValue &slot() const { return gPVCL.*member; }
};

struct Group {
  unsigned char List::*flag; // touched
  Section section;           // of the stored values
  std::span<const GroupedValue> values;
  // Judges the completed group and acts on what follows from it. False refuses the request. nullptr: no rule.
  bool (*judge)(const Group &group, FaultNames &faults);
  // After all groups passed: starts or stops what the group stands for. nullptr: nothing.
  void (*launch)() = nullptr;
  std::span<PendingApn> profiles = {}; // whose slots are the group's too

  unsigned char &touched() const { return gPVCL.*flag; }
  template <typename Visit>
  void each_slot(Visit visit) const {
    for (const GroupedValue &value : values)
      visit(value.slot());
    for (PendingApn &profile : profiles)
      for (PendingValue *slot : {&profile.apnEnable, &profile.apnApplyTo, &profile.apnBridgeVid})
        visit(*slot);
  }
};

// Did the request set this slot?
bool set_by_request(const PendingValue &slot);

} // namespace kova::transaction
