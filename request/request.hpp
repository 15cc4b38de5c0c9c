// What an agent does with one request, without a word about printing: reading parameters, setting them in
// the three phases of the set transaction, adding and deleting rows of lists, and naming what there is. One
// thread; nothing of a refused request reaches the next.
#pragma once

#include "model/model.hpp"
#include "request/fault.hpp"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kova::request {

struct Value {
  std::string path;
  model::Type type;
  std::string text; // as the device gives it: not always in the form of its type, "" where it has none
};

struct Reading {
  std::vector<Value> values;
  std::vector<Fault> faults;
};

// Paths of parameters and of rows of lists, or of branches (they end in "."; "" is everything). Whatever can
// be read is read.
Reading get_values(std::span<const std::string> paths);

struct Assignment {
  std::string path, value;
  bool operator==(const Assignment &) const = default;
};

// Of a path that is given twice only the last mention counts, in its place.
std::vector<Assignment> last_mentions(std::span<const Assignment> request);

// A set request is refused, and nothing of it stored, unless every value passed its checker and the batch
// validation. A setter that refuses ends the request: what came before it stays stored.
struct Setting {
  bool accepted = false;
  std::vector<Fault> faults; // may be empty though the request is refused
  std::vector<Assignment> stored, not_stored;
  // Whether what was stored is in force. Otherwise the device waits for the "Apply" parameter of an object.
  bool applied = true;
};

// The last mentions, in the order given. A boolean may have any of its four spellings, whichever its
// accessor takes.
Setting set_values(std::span<const Assignment> request);

// What came of an added or a deleted row.
struct RowChange {
  std::string object;
  int instance = 0;
  std::optional<Fault> fault;
};
// "OBJECT.". The row holds a placeholder, or the value; when that is refused no row stays behind.
RowChange add_row(const std::string &object);
RowChange add_row(const std::string &object, const std::string &value);
RowChange delete_row(const std::string &instance); // "OBJECT.N."

struct Name {
  std::string path; // of an object it ends in "."
  bool writable;    // of a list: rows can be added; of a row: it can be deleted
};
struct Names {
  std::vector<Name> names; // in the order of their paths
  std::optional<Fault> fault;
};
// Of a branch: the branch itself and all below it, or with `next_level` what stands directly in it. Of a
// parameter: the parameter, and with `next_level` a fault. "" is above everything.
Names get_names(const std::string &path, bool next_level);

} // namespace kova::request
