// Spectrum access: what the registration needs, and what is granted.
#include "platform/keys.hpp"
#include "src/frame/rows.hpp"

#include <kova/sas.h>

#include <cstdio>
#include <cstdlib>

namespace kova::sas {

namespace {

// ---- Stored forms

using Form = Text(const char *);

Text as_it_is(const char *text) {
  Text copy;
  std::snprintf(copy.chars, Text::size, "%.255s", text);
  return copy;
}

constexpr double millionths = 1e6;
Text degrees_from_millionths(const char *text) {
  Text stored;
  std::snprintf(stored.chars, Text::size, "%.6lf", std::strtod(text, nullptr) / millionths);
  return stored;
}
Text millionths_from_degrees(const char *text) {
  Text shown;
  std::snprintf(shown.chars, Text::size, "%.0lf", std::strtod(text, nullptr) * millionths);
  return shown;
}

constexpr double metres_in_a_foot = 0.3048;
bool keeps_feet() {
  return equal(load("SAS_CPI_HEIGHTUNIT"), "1");
}
Text stored_height(const char *metres) {
  constexpr int most_characters = 7;
  Text height = as_it_is(metres);
  if (keeps_feet())
    std::snprintf(height.chars, Text::size, "%.2f", std::strtod(metres, nullptr) / metres_in_a_foot);
  height.chars[most_characters] = '\0';
  return height;
}
Text shown_height(const char *stored) {
  Text height = as_it_is(stored);
  if (keeps_feet())
    std::snprintf(height.chars, Text::size, "%.2f", std::strtod(stored, nullptr) * metres_in_a_foot);
  return height;
}

// ---- The setters

bool accepts(const char *value, Rule rule) {
  return passes_unmarked(rule, value);
}
bool accepts(const char *value, const Condition &condition) {
  return unmarked.holds(value) && condition.holds(value);
}

int store_and_log(Key key, const char *value) {
  store(key, value);
  sasSyslogMessage("set %s=%s", key.text, value);
  return 0;
}

template <typename Judge>
int set(Key key, const char *value, const Judge &judge) {
  value = text_or_empty(value);
  return accepts(value, judge) ? store_and_log(key, value) : -1;
}

template <typename Judge>
int set_with_domain_proxy(Key key, const char *value, const Judge &judge) {
  value = text_or_empty(value);
  return accepts(value, judge) && !equal(load(key::sas_domain_proxy), "0") ? store_and_log(key, value) : -1;
}

template <Form *stored>
int set_as(Key key, const char *value, Rule rule) {
  value = text_or_empty(value);
  return accepts(value, rule) ? store_and_log(key, stored(value)) : -1;
}

template <Form *shown>
int answer_as(Key key, char *buf, unsigned int buflen) {
  return answer(shown(load(key)), buf, buflen);
}

} // namespace

} // namespace kova::sas

using namespace kova;
using namespace kova::sas;

#include "src/sas/sas.def"

int sasGetTr069cbsdSerialNumber(char *buf, unsigned int buflen) {
  const Text serial = load(runtime(key::serial_number));
  return answer(serial, buf, buflen) == 0 && !serial.empty() ? 0 : -1;
}
