#include "src/lists/row_list.hpp"

#include "platform/nvram.h"
#include "src/frame/growing_text.hpp"
#include "src/frame/trace.hpp"

#include <kova/security.h>
#include <strings.h>

#include <cstdio>

namespace kova::lists {

namespace {

// A list text while it is written: rows joined by ";", in the room that editing has.
class ListText {
public:
  explicit ListText(std::size_t size)
      : room_(static_cast<char *>(std::calloc(1, size))), text_(room_.writable(), size) {}
  void add_row(const char *row, std::size_t length) {
    text_.add_what_fits("%s%.*s", rows_++ > 0 ? ";" : "", static_cast<int>(length), row);
  }
  // False when the store did not take it; then the mirror keeps what it has, too.
  bool store_while_taken(const List &list) const {
    if (room_.writable() == nullptr) return false; // without memory the list stays as it was
    return store(list.key, text_) >= 0 && (list.mirror == nullptr || store(list.mirror, text_) >= 0);
  }
  // Key and mirror each, whatever the store says of the other.
  void store_all(const List &list) const {
    if (room_.writable() == nullptr) return;
    store(list.key, text_);
    if (list.mirror != nullptr) store(list.mirror, text_);
  }

private:
  OwnedText room_;
  GrowingText text_;
  int rows_ = 0;
};

// A text that was read short is edited in the room that agents count on; one that was read whole keeps its rows.
std::size_t room_for(std::size_t read, const char *text, const char *row) {
  constexpr std::size_t edit_room = 2048;
  return read == whole_text ? std::strlen(text) + std::strlen(row) + 2 : edit_room;
}

bool is_on(const Interlock &interlock) {
  return interlock.enable_key == nullptr || load_switch(interlock.enable_key) != 0;
}

bool allows(const List &list, const char *operation, bool asks_enable) {
  const Interlock &interlock = list.interlock;
  const bool has_colour = interlock.mode_key != nullptr, is_black = equal(interlock.refused_mode, "1");
  const char *colour = !has_colour ? "" : is_black ? " black" : " white";
  if (asks_enable && !is_on(interlock)) {
    dbg_trace("[TR069][Error]%s disable, don't %s %s%s filter.\n", list.name, operation, list.name, colour);
    return false;
  }
  if (!has_colour) return true;
  const Text mode = load(interlock.mode_key);
  if (!equal(mode, interlock.refused_mode)) return true;
  dbg_trace("[TR069][Error]%s filter mode is %s(%s), don't %s%s filter.\n", list.name,
            is_black ? "white" : "black", mode.chars, operation, colour);
  return false;
}

// The position of a row number. Numbers below 1 name no row, but are not out of range: the list is written as it was.
int position_of(int index) {
  return index > 0 ? index - 1 : -1;
}

bool in_range(int position, const char *text, const char *what) {
  const int count = firewall_getRuleNums(text);
  if (position < count) return true;
  dbg_trace("%s index %d out of range %d!\n", what, position, count);
  return false;
}

void announce(const List &list, const char *what) {
  if (list.service == nullptr) return;
  char event[64];
  std::snprintf(event, sizeof event, "%s %s", list.service, what);
  kova_trigger_cpe_event(event);
}

void store_with_service(const List &list, const ListText &text) {
  announce(list, "stop");
  text.store_all(list);
  announce(list, "start");
}

std::size_t kept(const Row &row, std::size_t most) {
  return row.length < most ? row.length : most;
}

} // namespace

bool Row::is(const char *value) const {
  return std::strlen(value) == length && std::memcmp(begin, value, length) == 0;
}

bool Row::is_ignoring_case(const char *value) const {
  return std::strlen(value) == length && strncasecmp(begin, value, length) == 0;
}

OwnedText load_text(const char *key, std::size_t most) {
  char *text = nvram_bufget(static_cast<int>(Section::config), key);
  if (text != nullptr && std::strlen(text) > most) text[most] = '\0';
  return OwnedText(text);
}

int add(const List &list) {
  const OwnedText text = load_text(list.key, list.reads.add);
  if (!allows(list, "add", true)) return -1;
  ListText longer(room_for(list.reads.add, text, list.placeholder));
  if (*text != '\0') longer.add_row(text, std::strlen(text));
  longer.add_row(list.placeholder, std::strlen(list.placeholder));
  return longer.store_while_taken(list) ? 0 : refuse("Fail to write to nvram!\n");
}

int set(const List &list, int index, const char *value) {
  const OwnedText text = load_text(list.key, list.reads.set);
  if (!allows(list, "set", true)) return -1;
  value = text_or_empty(value);
  const int position = position_of(index);
  if (!in_range(position, text, "Rule")) return -1;
  if (const int refusal = list.check(value, position); refusal != 0) return refusal;
  if (any_row(text, [&](const Row &row, int at) { return at != position && row.is(value); })) {
    dbg_trace("Set value already exist");
    return list.duplicate;
  }
  ListText changed(room_for(list.reads.set, text, value));
  any_row(text, [&](const Row &row, int at) {
    if (at == position)
      changed.add_row(value, std::strlen(value));
    else
      changed.add_row(row.begin, kept(row, list.keeps.set));
    return false;
  });
  store_with_service(list, changed);
  return 0;
}

int remove(const List &list, int index) {
  const OwnedText text = load_text(list.key, list.reads.remove);
  if (!allows(list, "delete", false)) return -1;
  const int position = position_of(index);
  char what[64];
  std::snprintf(what, sizeof what, "%s Rules", list.rows_name);
  if (!in_range(position, text, what)) return -1;
  ListText shorter(room_for(list.reads.remove, text, ""));
  any_row(text, [&](const Row &row, int at) {
    if (at != position) shorter.add_row(row.begin, kept(row, list.keeps.remove));
    return false;
  });
  store_with_service(list, shorter);
  return 0;
}

int get(const List &list, int index, char *buf, unsigned int len) {
  const OwnedText text = load_text(list.key, first_255);
  Text found;
  any_row(text, [&](const Row &row, int at) {
    if (at != position_of(index)) return false;
    std::memcpy(found.chars, row.begin, row.length);
    return true;
  });
  answer(found, buf, len);
  return 0;
}

} // namespace kova::lists

int firewall_getRuleNums(const char *text) {
  int count = 0;
  kova::lists::any_row(kova::text_or_empty(text), [&](const kova::lists::Row &, int) {
    ++count;
    return false;
  });
  return count;
}
