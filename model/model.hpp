// The data model: one table that binds parameter paths to the library's accessors.
#pragma once

#include "platform/rules.h"
#include "src/frame/conditions.hpp"

#include <kova/security.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kova::model {

// Types as the Broadband Forum's data model names them.
enum class Type {
  String,
  Secret, // a string that others need not know
  Boolean,
  Int,
  UnsignedInt,
  DateTime,
  IPAddress,
  MACAddress,
  List
};

enum class Access {
  ReadOnly,
  ReadWrite,
  // Writable in the standard data model, but this device only reports it; a set is refused like that of a
  // ReadOnly.
  ReportedOnly,
};

template <typename Shape>
struct Accessor {
  const char *name = nullptr; // the exported symbol
  Shape *call = nullptr;
  int indexes = 0; // how many arguments, each 1, `call` puts before its own
  explicit operator bool() const { return call != nullptr; }
};

// What a value may be, as the library judges it: by a rule of the platform's checker, by a condition, or by both.
struct Allowed {
  std::optional<kova_rule> rule;
  std::string_view words;          // the values that are taken, joined by blanks; "" for any
  long least = 0, most = 0;        // of a number; equal: no bounds
  std::string_view form;           // how a text looks, in words; "" for any
  std::string_view pattern;        // of XML Schema; "" for none
  std::optional<bool> takes_empty; // by the condition, if there is one

  constexpr Allowed() = default;
  constexpr Allowed(kova_rule rule_) : rule(rule_) {}
  constexpr Allowed(const Condition &condition)
      : words(text(condition.words)), least(condition.least), most(condition.most),
        form(text(condition.form)), pattern(text(condition.pattern)), takes_empty(condition.takes_empty) {}
  constexpr Allowed(const Condition &condition, kova_rule rule_) : Allowed(condition) { rule = rule_; }

private:
  static constexpr std::string_view text(const char *text) { return text == nullptr ? "" : text; }
};

struct Parameter {
  std::string_view path; // full, instances as numbers: "InternetGatewayDevice.LANDevice.1...."
  Type type;
  Access access;
  // Those that the device has. The setter of a ReadOnly is for the device's own tools.
  Accessor<kova_getter> get;
  Accessor<kova_setter> set;
  Accessor<kova_checker> check;
  std::string_view unit; // "" for none
  std::string_view meaning;
  Allowed allowed; // of a writable one

  bool writable() const { return access == Access::ReadWrite; }
};

// All parameters, in the order of their paths.
std::span<const Parameter *const> parameters();
// nullptr when no parameter has this path.
const Parameter *find(std::string_view path);
// The parameters of a branch (a path that ends in "."; "" is everything), in order; empty when there is none.
std::span<const Parameter *const> branch(std::string_view prefix);
// The parameters whose paths begin with these characters, in order: what a half-typed path may become.
std::span<const Parameter *const> starting_with(std::string_view prefix);

// A table of rows that are numbered from 1, each a text.
struct RowList {
  std::string_view path; // "InternetGatewayDevice....{i}.Rule"
  Accessor<kova_row_getter> get;
  // None for a list that is only read.
  Accessor<kova_row_add> add;
  Accessor<kova_row_setter> set;
  Accessor<kova_row_delete> remove;
  const char *(*reason)(int code); // of what the setter answers; nullptr when it has none
  bool empty_is_end;               // otherwise the getter fails beyond the last row
  size_t longest_text;             // of all rows, with a separator between two; 0 when there is no bound
  std::string_view form;           // the fields of a row, joined by commas; "" for a single text
  std::string_view meaning;
  std::string_view described; // the meaning, with the form of a row

  bool writable() const { return static_cast<bool>(set); }
  std::string_view object() const; // up to the number
  std::string_view member() const; // behind the number
  std::string instance(int index) const;
  std::optional<std::string> read(int index) const;
  std::vector<std::string> rows() const;
};

// All lists, in the order of their paths.
std::span<const RowList> lists();
const RowList *find_list(std::string_view object);

struct RowName {
  const RowList *list;
  int index;
  bool is_branch; // "OBJECT.N." rather than "OBJECT.N.Rule"
};
// The list and number that a path names, whether there is such a row or not.
std::optional<RowName> row_at(std::string_view path);

std::string_view name(Type type);     // "string", "unsignedInt", ...
std::string_view name(Access access); // "readOnly" or "readWrite": what the device allows

} // namespace kova::model
