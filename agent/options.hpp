// The options of the agent's two programs. What a task is started with is what its agent was started with.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kova::agent {

// Files of the TLS connection with the ACS.
struct TlsFiles {
  std::string ca, certificate, key; // "" for the system's CAs, and for no certificate of one's own
};

struct Options {
  bool foreground = false;
  std::optional<std::uint16_t> port; // of connection requests; otherwise that of the last time, or a free one
  std::string trace;                 // file; "" for none
  TlsFiles tls;
  unsigned least_retry_wait = 5; // seconds
  long exchange_seconds = 60;    // after which an unanswered message ends the session
};

// Those at the beginning of a command line; getopt's optind tells where they end. --secondary chooses the management
// instance. Nothing when they are not understood.
std::optional<Options> read_options(int argc, char **argv);

// What a task and the agent after a boot take; without the instance and the port.
std::vector<std::string> words_of(const Options &options);

} // namespace kova::agent
