// The configuration of a device, as a request that gives it to another one.
#pragma once

#include "request/request.hpp"

#include <string>
#include <vector>

namespace kova::request {

// Whether a parameter that can be set is no setting: it starts something, or reads as nothing.
bool acts(const std::string &path);

struct Configuration {
  std::vector<Assignment> values; // in an order in which another device takes them
  std::vector<Fault> left_out;    // what the device would not take back as it is now
};

// What can be set and read: no secrets, and nothing that acts rather than stays. Of the paths that begin so.
Configuration get_configuration(const std::string &prefix);

// Of these values, in such an order, all but what cannot be set: because it is only read, acts, is empty, or is closed
// by another of them. For the values of a reading, which is set again.
std::vector<Assignment> settings_among(std::vector<Assignment> values);

} // namespace kova::request
