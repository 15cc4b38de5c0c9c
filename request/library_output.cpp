#include "request/library_output.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>

namespace kova::request {

LibraryOutputAside::LibraryOutputAside() {
  std::cout.flush();
  std::fflush(stdout);
  results_ = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
  if (results_ >= 0) dup2(STDERR_FILENO, STDOUT_FILENO);
}

LibraryOutputAside::~LibraryOutputAside() {
  std::fflush(stdout);
  if (results_ < 0) return;
  dup2(results_, STDOUT_FILENO);
  close(results_);
}

} // namespace kova::request
