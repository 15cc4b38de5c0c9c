// The programs of the device's diagnostics tests in one: called by the name of one, it does that one's work.
#include "device/diag/echo_server.hpp"
#include "device/diag/failure.hpp"
#include "device/diag/host.hpp"
#include "device/diag/ping.hpp"
#include "device/diag/trace_route.hpp"
#include "device/diag/transfer.hpp"
#include "device/diagnostics.hpp"
#include "device/log.hpp"
#include "device/process.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace kova;
using diag::Failure;
using diag::Options;
using diag::Results;
using diag::unknown_time;

enum ExitStatus { ended_well = 0, ended_in_error = 1, bad_command_line = 2 };

struct Test {
  std::string_view tool;
  const char *keys;
  Results (*run)(const Options &);
  Results none; // what a failed test leaves
};

const std::vector<Test> &tests() {
  static const std::vector<Test> all = {
      {"download_diag",
       "DLDIAG",
       diag::download,
       {{"TCPREQTIME", unknown_time},
        {"TCPRESTIME", unknown_time},
        {"RTIME", unknown_time},
        {"BTIME", unknown_time},
        {"ETIME", unknown_time},
        {"TESTRCVD", "0"},
        {"TOTALRCVD", "0"}}},
      {"upload_diag",
       "ULDIAG",
       diag::upload,
       {{"TCPREQTIME", unknown_time},
        {"TCPRESTIME", unknown_time},
        {"RTIME", unknown_time},
        {"BTIME", unknown_time},
        {"ETIME", unknown_time},
        {"TOTALSENT", "0"}}},
      {"ping_diag",
       "PINGDIAG",
       diag::ping,
       {{"SUC_CNT", "0"}, {"FAI_CNT", "0"}, {"AVG_TIME", "0"}, {"MIN_TIME", "0"}, {"MAX_TIME", "0"}}},
      {"traceroute_diag",
       "TRACEROUTEDIAG",
       diag::trace_route,
       {{"RSP_TIME", "0"}, {"HOPS_NUM", "0"}, {diag::route_hosts, ""}}},
  };
  return all;
}

struct CommandLine {
  std::string tool;               // "sec_ping_diag"
  std::vector<std::string> words; // behind it
  bool secondary() const { return tool != device::without_instance(tool); }
};

void say(const std::string &tool, const std::string &what) {
  device::log_record({{"kind", "device"}, {"pid", getpid()}, {"what", tool + ": " + what}});
  std::fprintf(stderr, "%s: %s\n", tool.c_str(), what.c_str());
}

int run_test(const Test &test, const CommandLine &line) {
  const diag::ResultKeys keys(line.secondary(), test.keys);
  keys.await_request();
  ExitStatus status = bad_command_line;
  try {
    const Options options = diag::options_of(line.tool, line.words);
    status = ended_in_error;
    keys.store(test.run(options), diag::state::complete);
    return ended_well;
  } catch (const Failure &failure) {
    say(line.tool, std::string(failure.state) + ": " + failure.what());
    keys.store(test.none, failure.state);
    return status;
  }
}

int run_echo_server(const CommandLine &line) {
  ExitStatus status = bad_command_line;
  try {
    const Options options = diag::options_of(line.tool, line.words);
    status = ended_in_error;
    diag::serve_echo(options);
    return ended_well;
  } catch (const Failure &failure) {
    say(line.tool, failure.what());
    return status;
  }
}

int run_tool(const CommandLine &line) {
  setenv("LC_ALL", "C", 1); // the host's programs are to write what can be read
  diag::end_with_parent_and_child();
  try {
    for (const Test &test : tests())
      if (test.tool == device::without_instance(line.tool)) return run_test(test, line);
    return run_echo_server(line);
  } catch (const std::exception &error) {
    say(line.tool, error.what());
    return ended_in_error;
  }
}

// The first is the program's name.
std::vector<std::string> words_of_input() {
  auto words = device::words_of({std::istreambuf_iterator<char>(std::cin), {}});
  if (!words.empty()) words.erase(words.begin());
  return words;
}

int print_names(FILE *to) {
  std::fputs("kova-diag: is called by the name of a diagnostics program of the device:\n", to);
  for (const std::string_view tool : device::diagnostics_tools)
    std::fprintf(to, "  %s\n", std::string(tool).c_str());
  std::fputs("Each prints its usage when called with --help.\n", to);
  return to == stdout ? ended_well : bad_command_line;
}

} // namespace

int main(int argc, char **argv) {
  umask(077);
  std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
  const std::string_view called = argc > 0 ? argv[0] : "";
  const std::string tool(called.substr(called.rfind('/') + 1));
  const bool asks_for_help = words == std::vector<std::string>{"--help"};
  if (std::ranges::find(device::diagnostics_tools, tool) == device::diagnostics_tools.end())
    return print_names(asks_for_help ? stdout : stderr);
  if (words == std::vector<std::string>{std::string(device::words_from_input)}) words = words_of_input();
  if (!asks_for_help) return run_tool({tool, words});
  std::fputs(diag::usage(tool).c_str(), stdout);
  return ended_well;
}
