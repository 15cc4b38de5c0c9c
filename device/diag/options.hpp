// The command lines of the diagnostics programs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kova::diag {

struct Options {
  bool secondary = false, echo_plus = false, save_to_file = false;
  std::string host, url, interface, source, wait_times;
  unsigned long count = 0, timeout = 0, size = 0, length = 0, dscp = 0, port = 0, tries = 0, max_hops = 0;
};

// What --help prints about a program; tool: its name, "sec_ping_diag".
std::string usage(std::string_view tool);
// Of the words behind the program's name. Throws Failure for what is no command line of this program.
Options options_of(std::string_view tool, const std::vector<std::string> &words);

} // namespace kova::diag
