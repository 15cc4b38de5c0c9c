// Failures of system calls as texts for a person.
#pragma once

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>

namespace kova::device {

[[noreturn]] inline void fail(const std::string &what, int error = errno) {
  throw std::runtime_error(what + ": " + std::strerror(error));
}

} // namespace kova::device
