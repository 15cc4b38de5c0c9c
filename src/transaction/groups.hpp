// The nine groups of a request that are judged as a whole: what a group is made of. The groups themselves are
// listed in batch.cpp and described in lan_groups.cpp, diagnostics_groups.cpp and wan_group.cpp.
#pragma once

#include "src/frame/settings.hpp"

#include <kova/transaction.h>

#include <cstddef>

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

// Where the value of a slot that the request did not set comes from.
struct StoredValue {
  const char *label; // begins with "Local", which tells it from a name of the request
  StoredKey key;
  const char *if_empty = ""; // stands in for an empty stored value
};

struct Group {
  std::size_t touched;    // offset of the flag in the check list
  std::size_t first_slot; // offset of the first slot; the others follow without a gap
  std::size_t slot_count;
  Section section;           // of the stored values
  const StoredValue *stored; // one for each slot; nullptr: the group is not completed
  // Judges the completed group and acts on what follows from it. False refuses the request. nullptr: no rule.
  bool (*judge)(const Group &group, FaultNames &faults);
  // After all groups passed: starts or stops what the group stands for. nullptr: nothing.
  void (*launch)();

  PendingValue &slot(std::size_t index) const;
};

// The places of a group in the check list: its flag, first and last slot.
#define KOVA_GROUP_PLACES(touched, first, last)                                                              \
  offsetof(PendingValueCheckList, touched), offsetof(PendingValueCheckList, first),                          \
      (offsetof(PendingValueCheckList, last) - offsetof(PendingValueCheckList, first)) /                     \
              sizeof(PendingValue) +                                                                         \
          1

// Did the request set this slot?
bool set_by_request(const PendingValue &slot);

// The combined rules and launches, by group.
bool judge_wifi(const Group &group, FaultNames &faults);
bool judge_lan(const Group &group, FaultNames &faults);
bool judge_dns(const Group &group, FaultNames &faults);
bool judge_test_state(const Group &group, FaultNames &faults);
bool judge_trace_route(const Group &group, FaultNames &faults);
bool judge_wan_apn(const Group &group, FaultNames &faults);
void launch_download();
void launch_upload();
void launch_udp_echo();
void launch_ping();
void launch_trace_route();

} // namespace kova::transaction
