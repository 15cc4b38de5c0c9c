// The configuration of a device, as a request that gives it to another one.
#pragma once

#include "request/request.hpp"

#include <string>
#include <vector>

namespace kova::request {

// Whether a parameter that can be set is no setting: it starts something, or reads as nothing.
bool acts(const std::string &path);

struct Configuration {
  // In an order in which another device takes them: first what is judged together, then each behind what opens it,
  // rows last.
  std::vector<Assignment> values;
  std::vector<Fault> left_out; // what the device would not take back as it is now
};

// What can be set and read: no secrets, and nothing that acts rather than stays. Of the paths that begin so.
Configuration get_configuration(const std::string &prefix);

} // namespace kova::request
