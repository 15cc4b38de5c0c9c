// Speed dialling: short numbers that stand for telephone numbers.
#include "src/voice/speed_dial.hpp"

#include "src/frame/trace.hpp"
#include "src/lists/fields.hpp"

#include <kova/voice.h>

namespace kova::voice {

namespace {

using namespace lists;

int check_row(const char *value, int position) {
  return checkQuickdialAllParam(value) != 0 ? -1 : checkSpeedDialParamRepeated(value, position);
}

enum Field { dial_number, real_number, note, field_count };

// A field of a row, as a place in it.
struct FieldText {
  const char *begin;
  std::size_t length;
  bool operator==(const FieldText &other) const {
    return length == other.length && std::memcmp(begin, other.begin, length) == 0;
  }
};

// The number before the first comma, or between the first and the second; rows end at their list's separator.
FieldText number_of(const char *row, Field field) {
  constexpr const char *ends = ",;";
  const char *begin = row;
  if (field == real_number) {
    begin += std::strcspn(begin, ends);
    if (*begin == ',') ++begin;
  }
  return {begin, std::strcspn(begin, ends)};
}

} // namespace

// clang-format off
constexpr List speed_dial = {"Quickdial", "Quickdial", "SPEEDDialLists", nullptr, " ,,", {first_255, first_255, first_255},
                             {keeps_63, keeps_63}, {}, check_row};
// clang-format on

} // namespace kova::voice

using namespace kova;
using namespace kova::voice;

int checkQuickdialAllParam(const char *row) {
  const Fields<field_count, Text::size> fields(row);
  if (const int code = ask(RULE_SPEED_DIAL_NUMBER, fields[dial_number]); code < 0)
    return refuse(code == -1 ? "[Error]dial number cannot be null.\n" : "[Error]dial number must be 1~16.\n");
  if (is_empty(fields[real_number]) || !passes(RULE_SPEED_DIAL_REAL_NUMBER, fields[real_number]))
    return refuse("[Error]real number cannot be null.\n");
  if (!fields.has(note)) return -1;
  if (const int code = ask(RULE_SPEED_DIAL_NOTE, fields[note]); code < 0)
    return refuse(code == -1 ? "[Error]The characters number in note exceeds 32!\n"
                             : "[Error]Note cannot contain the following characters:\n");
  return 0;
}

int checkSpeedDialParamRepeated(const char *row, int position) {
  row = text_or_empty(row);
  const FieldText dial = number_of(row, dial_number), real = number_of(row, real_number);
  const bool repeated = any_row(load_text(speed_dial.key), [&](const Row &other, int at) {
    if (at == position) return false;
    if (number_of(other.begin, dial_number) == dial) return refuse("[Error]dial number repeated.\n") != 0;
    return number_of(other.begin, real_number) == real && refuse("[Error]real number repeated.\n") != 0;
  });
  return repeated ? -1 : 0;
}
