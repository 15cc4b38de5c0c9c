// The grammar of the tables of parameters (*.def), as the library reads it. A table is read twice: here a row is the
// definition of its accessors; in model/ it is path, type, access, accessors, what may be set, and meaning.
//
//   OBJECT("InternetGatewayDevice.LANDevice.1.")                 the rows below are members of this object
//   PARAMETER("Name", Type, "unit", "what it is",  VERB(...))    a verb says what the accessors do
//   REPORTED( ... )                                              writable in the standard, but only told by this device
//   AGENT_SET( ... )                                             only told too: the agent itself or a tool sets it
//   LIST("OBJECT.", "Name", "form,of,a,row", "what it is",  VERB(...))   a list of numbered rows
//
// A verb that more than one family needs stands here; a family's own stands above its table, in one line, made of
// the three shapes.
#pragma once

#include "src/frame/conditions.hpp"
#include "src/frame/settings.hpp"
#include "src/frame/statistics.hpp"

// clang-format off
// The three shapes of an accessor.
#define KOVA_GET(getter, result) \
  int getter([[maybe_unused]] char *buf, [[maybe_unused]] unsigned int buflen) { return result; }
#define KOVA_SET(setter, result)     int setter(const char *value) { return result; }
#define KOVA_CHECK(checker, result)  int checker([[maybe_unused]] const char *name, const char *value) { return result; }

#define OBJECT(path)
#define PARAMETER(name, type, unit, meaning, ...)  __VA_ARGS__
#define REPORTED(name, type, unit, meaning, ...)   __VA_ARGS__
#define AGENT_SET(name, type, unit, meaning, ...)  __VA_ARGS__
#define LIST(object, name, form, meaning, ...)     __VA_ARGS__

// An answer that is stored as it is told, that never changes, or that `how` works out from `what`.
#define STORED(getter, key)          KOVA_GET(getter, ::kova::answer_stored(key, buf, buflen))
#define CONSTANT(getter, text)       KOVA_GET(getter, ::kova::answer(text, buf, buflen))
#define COMPUTED(getter, how, what)  KOVA_GET(getter, how(what, buf, buflen))
// Told as stored; `how` judges a value by the rule, or by a condition where there is no rule, and stores it.
#define SETTING(getter, setter, key, rule, how)         STORED(getter, key) KOVA_SET(setter, how(key, value, rule))
// Not told as it is stored: `told` tells it (answer_nothing and answer_blank keep a secret), `how` judges and stores as above.
#define CONVERTED(getter, told, setter, key, judge, how) \
  KOVA_GET(getter, told(key, buf, buflen)) KOVA_SET(setter, how(key, value, judge))
// Told as stored; the checker judges by condition and rule and parks the value in the slot of its group, so that the
// setter only stores. `set_judged` and `check` are the family's.
#define GROUPED(getter, setter, checker, key, group, slot, condition, rule) \
  STORED(getter, key) \
  KOVA_SET(setter, set_judged(key, value, (condition).takes_empty)) \
  KOVA_CHECK(checker, check(name, value, (condition).holds, rule, {gPVCL.group, gPVCL.slot}))
// A grouped one of a family that tells its settings by its own `tell` and sets them by `how`.
#define COMPUTED_GROUPED(getter, setter, checker, what, group, slot, allowed, how) \
  CONVERTED(getter, tell, setter, what, allowed, how) \
  KOVA_CHECK(checker, check(name, value, allowed, {gPVCL.group, gPVCL.slot}))
// Told as stored; what a tool of the device found, stored as it is.
#define RESULT(getter, setter, key)  STORED(getter, key) KOVA_SET(setter, ::kova::set_as_given(key, value))
// Setting exactly "1" acts. The getter of one that can be read leaves the caller's buffer as it is.
#define TRIGGER(setter, act)                  KOVA_SET(setter, ::kova::is_go_ahead(value) ? act : -1)
#define READABLE_TRIGGER(getter, setter, act) KOVA_GET(getter, 0) TRIGGER(setter, act)
// Accessors that are functions of their own in the family's source, NONE for one that there is not; `may_be` says what may
// be set.
#define CODED(getter, setter, checker, may_be)
// clang-format on
