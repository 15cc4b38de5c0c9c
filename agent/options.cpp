#include "agent/options.hpp"

#include <getopt.h>
#include <kova/frame.h>

#include <charconv>
#include <cstring>
#include <filesystem>

namespace kova::agent {
namespace {

template <typename Number>
bool take_number(Number &number) {
  const char *end = optarg + std::strlen(optarg);
  const auto parsed = std::from_chars(optarg, end, number);
  return parsed.ec == std::errc() && parsed.ptr == end;
}

// The tasks run elsewhere.
bool take_file(std::string &file) {
  file = std::filesystem::absolute(optarg).string();
  return true;
}

bool take(int option, Options &options) {
  switch (option) {
  case 's':
    setSecondaryInstance();
    return true;
  case 'f':
    return options.foreground = true;
  case 'p':
    return take_number(options.port.emplace());
  case 't':
    return take_file(options.trace);
  case 'a':
    return take_file(options.tls.ca);
  case 'c':
    return take_file(options.tls.certificate);
  case 'k':
    return take_file(options.tls.key);
  case 'r':
    return take_number(options.least_retry_wait);
  case 'x':
    return take_number(options.exchange_seconds);
  default:
    return false;
  }
}

} // namespace

std::optional<Options> read_options(int argc, char **argv) {
  // Not the library that the other tools have for this: the agent is to be small while it waits.
  constexpr option known[] = {
      {"secondary", no_argument, nullptr, 's'},     {"foreground", no_argument, nullptr, 'f'},
      {"port", required_argument, nullptr, 'p'},    {"trace", required_argument, nullptr, 't'},
      {"ca", required_argument, nullptr, 'a'},      {"cert", required_argument, nullptr, 'c'},
      {"key", required_argument, nullptr, 'k'},     {"retry-wait", required_argument, nullptr, 'r'},
      {"timeout", required_argument, nullptr, 'x'}, {nullptr, 0, nullptr, 0}};
  Options options;
  for (int option; (option = getopt_long(argc, argv, "", known, nullptr)) != -1;)
    if (!take(option, options)) return std::nullopt;
  return options;
}

std::vector<std::string> words_of(const Options &options) {
  std::vector<std::string> words;
  const auto add = [&words](const char *name, const std::string &value) {
    if (!value.empty()) words.push_back(std::string("--") + name + "=" + value);
  };
  add("trace", options.trace);
  add("ca", options.tls.ca);
  add("cert", options.tls.certificate);
  add("key", options.tls.key);
  add("retry-wait", std::to_string(options.least_retry_wait));
  add("timeout", std::to_string(options.exchange_seconds));
  return words;
}

} // namespace kova::agent
