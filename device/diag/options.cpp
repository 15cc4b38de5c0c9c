#include "device/diag/options.hpp"

#include "device/diag/failure.hpp"
#include "device/diagnostics.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <functional>
#include <memory>

namespace kova::diag {
namespace {

using device::without_instance;

constexpr const char *state_note = "The results go to the run-time section of the device's store, and last "
                                   "the state: \"Complete\", or the \"Error_\"\n"
                                   "text that names the failure. The test begins when the state there reads "
                                   "\"Requested\", after 2 s in any case.\n"
                                   "Exit status: 0 complete, 1 an error state, 2 no such command line.\n";
constexpr const char *echo_note = "Runs until it is terminated. Counts and times go to "
                                  "/tmp/udpEchoServerStatistics of the device's root (with\n"
                                  "\"sec_\" ahead of the name for the secondary instance).\n";

struct Range {
  unsigned long least, most;
};

// The leading number counts, as everywhere in the device: "5 times" is 5.
unsigned long number_of(const std::string &option, const std::string &text, Range range) {
  errno = 0;
  char *end = nullptr;
  const unsigned long number = std::strtoul(text.c_str(), &end, 10);
  if (end == text.c_str() || text[0] == '-' || errno != 0 || number < range.least || number > range.most)
    throw Failure(state::other, option + " is " + text + ", not a number from " +
                                    std::to_string(range.least) + " to " + std::to_string(range.most));
  return number;
}

// An empty value leaves no word, and the next option in its place.
std::string is_no_option(const std::string &word) {
  return word.starts_with('-') ? "no value" : "";
}

class CommandLine {
public:
  CommandLine(std::string_view tool, Options &options)
      : app_("Diagnostics test of the virtual device", std::string(tool)), options_(options) {
    options_.secondary = tool != without_instance(tool);
    app_.set_help_flag("--help", "Print this text");
    if (options_.secondary)
      app_.add_flag("-S", said_secondary_, "Secondary management instance, which the name says already");
    add_options(without_instance(tool));
  }
  void parse(std::vector<std::string> words) {
    std::ranges::reverse(words); // as CLI11 takes them
    app_.parse(std::move(words));
  }
  std::string help() const { return app_.help(); }

private:
  static constexpr Range some = {1, 0xFFFFFFFF};

  CLI::Option *text(const char *name, std::string &value, const char *what, const char *meaning) {
    return app_.add_option(name, value, meaning)->type_name(what)->expected(1)->check(is_no_option, "");
  }
  CLI::Option *number(const char *name, unsigned long &value, Range range, const char *what,
                      const char *meaning) {
    const auto take = [name, &value, range](const std::string &given) {
      value = number_of(name, given, range);
    };
    return app_.add_option_function<std::string>(name, take, meaning)->type_name(what)->expected(1);
  }

  void add_network() {
    text("-i", options_.interface, "INTERFACE", "Interface to use");
    number("-d", options_.dscp, {0, 63}, "DSCP", "Code point of the packets, 0 to 63");
  }

  void add_options(std::string_view tool) {
    app_.footer(tool == "udpechoplus_server" ? echo_note : state_note);
    if (tool == "download_diag") return add_download();
    if (tool == "upload_diag") return add_upload();
    if (tool == "ping_diag") return add_ping();
    if (tool == "traceroute_diag") return add_trace_route();
    add_echo_server();
  }
  void add_download() {
    app_.description("Downloads from an HTTP server and notes the times and bytes of the transfer");
    text("-u", options_.url, "URL", "What to download, http:// only")->required();
    add_network();
  }
  void add_upload() {
    app_.description("Uploads to an HTTP server and notes the times and bytes of the transfer");
    text("-u", options_.url, "URL", "Where to put it, http:// only")->required();
    number("-l", options_.length, some, "BYTES", "Length of what is uploaded")->required();
    add_network();
  }
  void add_ping() {
    app_.description(
        "Sends echo requests through the host's ping and notes how many were answered, and when");
    text("-H", options_.host, "HOST", "Name or address")->required();
    number("-c", options_.count, {1, 0x7FFFFFFF}, "COUNT", "Requests to send")->required();
    number("-W", options_.timeout, some, "MS",
           "Longest time to an answer; 1, what the device takes for\n"
           "an unset timeout, is a whole second")
        ->required();
    number("-s", options_.size, {0, 65507}, "BYTES", "Data in a request")->required();
  }
  void add_trace_route() {
    app_.description(
        "Seeks the route through the host's traceroute and notes its length and the time to the host");
    text("host", options_.host, "HOST", "Name or address")->required();
    number("size", options_.size, {0, 65000}, "BYTES", "Length of a packet")->required();
    number("-q", options_.tries, {1, 10}, "TRIES", "Packets for each hop")->required();
    number("-m", options_.max_hops, {1, 255}, "HOPS", "After how many hops to give up")->required();
    text("-w", options_.wait_times, "S,HERE,NEAR",
         "Seconds to wait for an answer; at most HERE times as long as\n"
         "the same hop took, and NEAR times as long as the next did")
        ->required();
    app_.add_flag("--savetof", options_.save_to_file,
                  "Keep the hops in /tmp/tracerouteResults of the device's root");
  }
  void add_echo_server() {
    app_.description("Answers UDP packets with what they hold");
    number("-p", options_.port, {1, 65535}, "PORT", "Port to listen on")->required();
    text("-i", options_.interface, "INTERFACE", "Interface to listen on");
    text("-s", options_.source, "ADDRESS", "Answer to this address only");
    app_.add_flag("-P", options_.echo_plus,
                  "Put sequence numbers and times into answers of 20 bytes and more");
  }

  CLI::App app_;
  Options &options_;
  bool said_secondary_ = false; // the program's name decides
};

} // namespace

std::string usage(std::string_view tool) {
  Options options;
  return CommandLine(tool, options).help();
}

Options options_of(std::string_view tool, const std::vector<std::string> &words) {
  Options options;
  try {
    CommandLine(tool, options).parse(words);
  } catch (const CLI::ParseError &error) {
    throw Failure(state::other, error.what());
  }
  return options;
}

} // namespace kova::diag
