// Lists of rows: one text in the store, rows joined by ";". A list is a description; the engine is here once.
#pragma once

#include "src/frame/settings.hpp"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kova::lists {

// How much of the stored text an operation works on.
inline constexpr std::size_t first_255 = 255, whole_text = SIZE_MAX;
// How much of a row survives when another row is set or deleted.
inline constexpr std::size_t keeps_255 = 255, keeps_63 = 63;

// When a list may be edited: rows are added and set only while the family is on, and nothing touches the list that the
// family's mode leaves unused.
struct Interlock {
  const char *enable_key = nullptr; // nullptr: always on
  const char *mode_key = nullptr;   // nullptr: no mode
  const char *refused_mode = "";
};

struct List {
  const char *name, *rows_name; // in debug messages: the family, and the list
  const char *key;
  const char *mirror; // written with the same text; nullptr: none
  const char *placeholder;
  struct {
    std::size_t add, set, remove;
  } reads;
  struct {
    std::size_t set, remove;
  } keeps;
  Interlock interlock;
  // 0, or what the set answers. position is the row's, from 0; below 0 for a row that does not exist.
  int (*check)(const char *value, int position);
  int duplicate = -1;            // what the set answers for a row that another position holds
  const char *service = nullptr; // stopped before and started after a set or delete is stored
};

int add(const List &list);
int set(const List &list, int index, const char *value);
int remove(const List &list, int index);
// The row, or "" when there is none.
int get(const List &list, int index, char *buf, unsigned int len);

// A row, as a place in its list text.
struct Row {
  const char *begin;
  std::size_t length;
  bool is(const char *value) const;
  bool is_ignoring_case(const char *value) const;
};
// Visits the rows of a list text with their positions, until the visitor answers true. True when it did.
template <typename Visitor>
bool any_row(const char *text, Visitor visit) {
  if (*text == '\0') return false;
  for (int position = 0;; ++position) {
    const std::size_t length = std::strcspn(text, ";");
    if (visit(Row{text, length}, position)) return true;
    if (text[length] == '\0') return false;
    text += length + 1;
  }
}

// The stored text of a list, whole or its beginning.
OwnedText load_text(const char *key, std::size_t most = whole_text);

} // namespace kova::lists

// clang-format off
// The verbs of a LIST in a table: the four exported operations of a described list, or functions of the family's source,
// NONE for those that there are not. `reason` tells a person what the set answers.
#define ROWS(add_row, set_row, get_row, delete_row, list) \
  int add_row(void) { return ::kova::lists::add(list); } \
  int set_row(int index, const char *value) { return ::kova::lists::set(list, index, value); } \
  int get_row(int index, char *buf, unsigned int len) { return ::kova::lists::get(list, index, buf, len); } \
  int delete_row(int index) { return ::kova::lists::remove(list, index); }
#define CODED_ROWS(add_row, set_row, get_row, delete_row, reason)
// clang-format on
