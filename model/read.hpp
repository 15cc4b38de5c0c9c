// The grammar of the tables of parameters (src/*/*.def), as the data model reads it: a row is path, type, access,
// accessors, what may be set, and meaning. The library's own reading is src/frame/rows.hpp.
#pragma once

#include "model/tables.hpp"

#include <kova.h>

#include <type_traits>

namespace kova::model {

// An accessor as a row holds it. One that takes indexes has a single instance of everything: it is bound at index 1.
template <kova_getter *call>
consteval kova_getter *bound() {
  return call;
}
template <kova_setter *call>
consteval kova_setter *bound() {
  return call;
}
template <kova_checker *call>
consteval kova_checker *bound() {
  return call;
}
template <kova_wan_device_getter *call>
consteval kova_getter *bound() {
  return [](char *buf, unsigned int buflen) { return call(1, buf, buflen); };
}
template <kova_wan_connection_getter *call>
consteval kova_getter *bound() {
  return [](char *buf, unsigned int buflen) { return call(1, 1, buf, buflen); };
}
template <kova_ip_connection_getter *call>
consteval kova_getter *bound() {
  return [](char *buf, unsigned int buflen) { return call(1, 1, 1, buf, buflen); };
}
template <kova_ip_connection_setter *call>
consteval kova_setter *bound() {
  return [](const char *value) { return call(1, 1, 1, value); };
}

// The indexes that a function takes before all else.
template <typename... Arguments>
consteval int count_indexes(int (*)(Arguments...)) {
  return (0 + ... + (std::is_same_v<Arguments, int> ? 1 : 0));
}

// An accessor by its function, which may be NONE.
template <auto function>
consteval auto accessor(const char *name) {
  if constexpr (requires { bound<function>(); }) {
    return Accessor<std::remove_pointer_t<decltype(bound<function>())>>{name, bound<function>(),
                                                                        count_indexes(function)};
  } else {
    return *function;
  }
}

// An operation of a list, which may be NONE.
template <typename Shape>
constexpr Accessor<Shape> operation(const char *name, Shape *call) {
  return {name, call};
}

// An accessor that there is not.
struct None {
  template <typename Shape>
  constexpr operator Accessor<Shape>() const {
    return {};
  }
};
inline constexpr None NONE;
constexpr None operation(const char *, None none) {
  return none;
}
constexpr bool is_there(None) {
  return false;
}
template <typename Shape>
constexpr bool is_there(Shape *) {
  return true;
}

} // namespace kova::model

// clang-format off
#define KOVA_ACCESSOR(function) ::kova::model::accessor<&(function)>(#function)

#define OBJECT(path)                                {.object = path},
#define PARAMETER(leaf, kind, of, what, ...)        {.name = leaf, .type = Type::kind, .unit = of, .meaning = what, __VA_ARGS__},
#define REPORTED(leaf, kind, of, what, ...)         {.name = leaf, .type = Type::kind, .unit = of, .meaning = what, .reported = true, __VA_ARGS__},
#define AGENT_SET(leaf, kind, of, what, ...)        {.name = leaf, .type = Type::kind, .unit = of, .meaning = what, .agent_set = true, __VA_ARGS__},
#define LIST(path, leaf, fields, what, ...)         {.object = path, .name = leaf, .form = fields, .meaning = what, __VA_ARGS__},

#define KOVA_READ(getter)                           .get = KOVA_ACCESSOR(getter)
#define KOVA_WRITE(getter, setter, may_be)          .settable = true, KOVA_READ(getter), .set = KOVA_ACCESSOR(setter), .allowed = may_be
#define KOVA_JUDGED(getter, setter, checker, may_be) \
  .settable = true, KOVA_READ(getter), .set = KOVA_ACCESSOR(setter), .check = KOVA_ACCESSOR(checker), .allowed = may_be

// ---- What more than one family says
#define STORED(getter, key)                               KOVA_READ(getter)
#define CONSTANT(getter, text)                            KOVA_READ(getter)
#define COMPUTED(getter, how, what)                       KOVA_READ(getter)
#define SETTING(getter, setter, key, rule, how)           KOVA_WRITE(getter, setter, rule)
#define CONVERTED(getter, told, setter, key, judge, how)  KOVA_WRITE(getter, setter, judge)
#define CODED(getter, setter, checker, may_be) \
  .settable = is_there(setter), .get = KOVA_ACCESSOR(getter), .set = KOVA_ACCESSOR(setter), .check = KOVA_ACCESSOR(checker), \
  .allowed = may_be
#define GROUPED(getter, setter, checker, key, group, slot, condition, rule) \
  KOVA_JUDGED(getter, setter, checker, Allowed(condition, rule))
#define COMPUTED_GROUPED(getter, setter, checker, what, group, slot, may_be, how) KOVA_JUDGED(getter, setter, checker, may_be)
#define RESULT(getter, setter, key)                       KOVA_READ(getter), .set = KOVA_ACCESSOR(setter)
#define TRIGGER(setter, act)                              .settable = true, .set = KOVA_ACCESSOR(setter), .allowed = go_ahead
#define READABLE_TRIGGER(getter, setter, act)             KOVA_WRITE(getter, setter, go_ahead)

#define KOVA_OPERATIONS(add_row, set_row, get_row, delete_row) \
  .row_get = operation(#get_row, get_row), .row_add = operation(#add_row, add_row), \
  .row_set = operation(#set_row, set_row), .row_delete = operation(#delete_row, delete_row)
// Of a described list, the device sees 255 characters of all rows, and those beyond the last read as "".
#define ROWS(add_row, set_row, get_row, delete_row, list) \
  KOVA_OPERATIONS(add_row, set_row, get_row, delete_row), .empty_is_end = true, .longest_text = 255
#define CODED_ROWS(add_row, set_row, get_row, delete_row, reason_of) \
  KOVA_OPERATIONS(add_row, set_row, get_row, delete_row), .reason = reason_of

// ---- What a family says for itself
#define LONE(getter, setter, checker, key, condition)               KOVA_JUDGED(getter, setter, checker, condition)
#define JUDGE(setter, may_be)                                       .settable = true, .set = KOVA_ACCESSOR(setter), .allowed = may_be
#define INDEXED(getter, how, what)                        KOVA_READ(getter)
// clang-format on
