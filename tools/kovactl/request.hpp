// What an agent does with one request, without a word about printing: reading parameters, and setting them in
// the three phases of the set transaction.
#pragma once

#include "model/model.hpp"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kova::ctl {

// CWMP fault codes.
enum class FaultCode {
  InternalError = 9002,
  InvalidArguments = 9003,
  ResourcesExceeded = 9004,
  InvalidName = 9005,
  InvalidValue = 9007,
  NotWritable = 9008,
};

std::string_view text(FaultCode code);

struct Fault {
  std::string path;
  FaultCode code;
  std::string detail; // what a person would ask next
};

struct Value {
  std::string path;
  model::Type type;
  std::string text;
};

struct Reading {
  std::vector<Value> values;
  std::vector<Fault> faults;
};

// Paths of parameters and of rows of lists, or of branches (they end in "."; "" is everything). Whatever can be read is
// read.
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
};

// The last mentions, in the order given. One request to a process: the values of one that a checker refused stay parked.
Setting set_values(std::span<const Assignment> request);

// What came of an added or a deleted row.
struct RowChange {
  std::string object;
  int instance = 0;
  std::optional<Fault> fault;
};
RowChange add_row(const std::string &object);
RowChange delete_row(const std::string &instance);

} // namespace kova::ctl
