// How a family writes its rows. The macro's name says what the device allows; each accessor is written once
// and gives both its address and its name.
//
// A family whose members differ by an index wraps its rows in a macro of its own and stamps them:
//   #define PROFILE(n) READ_WRITE("..." #n ".Name", String, getTR069APN##n##Name, setTR069APN##n##Name, "", "..."),
//   PROFILE(1) PROFILE(2) ...
#pragma once

#include "model/model.hpp"

#include <kova/wan.h>

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

} // namespace kova::model

// clang-format off
#define KOVA_ACCESSOR(function) {#function, ::kova::model::bound<&(function)>()}
#define KOVA_ROW(path, type, access, get, set, check, unit, meaning) \
  {path, Type::type, Access::access, get, set, check, unit, meaning, {}}

#define READ_ONLY(path, type, get, unit, meaning) \
  KOVA_ROW(path, type, ReadOnly, KOVA_ACCESSOR(get), {}, {}, unit, meaning)
// The setter is for the device's own tools: an agent only reads the value.
#define RESULT(path, type, get, set, unit, meaning) \
  KOVA_ROW(path, type, ReadOnly, KOVA_ACCESSOR(get), KOVA_ACCESSOR(set), {}, unit, meaning)
#define REPORTED(path, type, get, unit, meaning) \
  KOVA_ROW(path, type, ReportedOnly, KOVA_ACCESSOR(get), {}, {}, unit, meaning)
#define READ_WRITE(path, type, get, set, unit, meaning) \
  KOVA_ROW(path, type, ReadWrite, KOVA_ACCESSOR(get), KOVA_ACCESSOR(set), {}, unit, meaning)
// Setting it acts; there is nothing to read.
#define TRIGGER(path, type, set, unit, meaning) \
  KOVA_ROW(path, type, ReadWrite, {}, KOVA_ACCESSOR(set), {}, unit, meaning)
#define CHECKED(path, type, get, set, check, unit, meaning) \
  KOVA_ROW(path, type, ReadWrite, KOVA_ACCESSOR(get), KOVA_ACCESSOR(set), KOVA_ACCESSOR(check), unit, meaning)
// clang-format on

namespace kova::model {

// One table per family; model.cpp joins them.
std::span<const Parameter> time_rows();
std::span<const Parameter> radio_rows();
std::span<const Parameter> sas_rows();

} // namespace kova::model
