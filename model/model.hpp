// The data model: one table that binds parameter paths to the library's accessors.
#pragma once

#include "frame/frame.h"

#include <span>
#include <string_view>

namespace kova::model {

// Types as the Broadband Forum's data model names them.
enum class Type { String, Boolean, Int, UnsignedInt, DateTime, IPAddress, MACAddress, List };

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
  explicit operator bool() const { return call != nullptr; }
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

std::string_view name(Type type);     // "string", "unsignedInt", ...
std::string_view name(Access access); // "readOnly" or "readWrite": what the device allows

} // namespace kova::model
