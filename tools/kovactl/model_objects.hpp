// The data model by objects, as documents about it are ordered. The instances of an object are one here,
// their number is "{i}".
#pragma once

#include "model/model.hpp"

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kova::ctl {

struct ModelParameter {
  std::string_view name; // the last of its path
  model::Type type;
  model::Access access;
  std::string_view unit;
  std::string meaning;                         // tells which instances have it, when not all do
  const model::Parameter *parameter = nullptr; // of the first of them; none for a list's rows
};

struct ModelObject {
  std::string path;           // "InternetGatewayDevice.LANDevice.{i}."
  bool is_list = false;       // its instances are rows that come and go
  bool rows_writable = false; // they can be added and deleted
  // Their paths, "InternetGatewayDevice.LANDevice.1."; a list's rows are not counted up.
  std::set<std::string_view> instances;
  std::vector<ModelParameter> parameters; // in the order of their names

  // How many there are in one parent.
  size_t entries() const;
};

// Every object on the way to a parameter, parents first.
std::vector<ModelObject> model_objects();

} // namespace kova::ctl
