#include "device/diag/options.hpp"

#include "device/diag/failure.hpp"
#include "device/diagnostics.hpp"

#include <getopt.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <set>
#include <stdexcept>
#include <variant>

namespace kova::diag {
namespace {

using device::without_instance;

struct Number {
  unsigned long Options::*into;
  unsigned long least, most;
};
constexpr unsigned long unbounded = 0xFFFFFFFF;

struct Declared {
  const char *name;  // "-u", "--savetof"; "HOST" of a word without a name
  const char *value; // what its value is called; "" where it has none
  std::variant<bool Options::*, std::string Options::*, Number> into;
  bool required;
  const char *meaning;

  bool has_name() const { return name[0] == '-'; }
  bool takes_value() const { return !std::holds_alternative<bool Options::*>(into); }
};

constexpr const char *state_note = "The results go to the run-time section of the device's store, and last "
                                   "the state: \"Complete\", or the \"Error_\"\n"
                                   "text that names the failure. The test begins when the state there reads "
                                   "\"Requested\", after 2 s in any case.\n"
                                   "Exit status: 0 complete, 1 an error state, 2 no such command line.\n";
constexpr const char *echo_note = "Runs until it is terminated. Counts and times go to "
                                  "/tmp/udpEchoServerStatistics of the device's root (with\n"
                                  "\"sec_\" ahead of the name for the secondary instance).\n";

struct Tool {
  std::string_view name; // of the primary instance
  const char *description, *note;
  std::vector<Declared> options;
};

// clang-format off
const Declared interface = {"-i", "INTERFACE", &Options::interface, false, "Interface to use"},
               dscp = {"-d", "DSCP", Number{&Options::dscp, 0, 63}, false, "Code point of the packets, 0 to 63"},
               secondary = {"-S", "", &Options::secondary, false, "Secondary management instance, which the name says already"};

const std::vector<Tool> tools = {
    {"download_diag", "Downloads from an HTTP server and notes the times and bytes of the transfer", state_note,
     {{"-u", "URL", &Options::url, true, "What to download, http:// only"},
      interface, dscp}},
    {"upload_diag", "Uploads to an HTTP server and notes the times and bytes of the transfer", state_note,
     {{"-u", "URL", &Options::url, true, "Where to put it, http:// only"},
      {"-l", "BYTES", Number{&Options::length, 1, unbounded}, true, "Length of what is uploaded"},
      interface, dscp}},
    {"ping_diag", "Sends echo requests through the host's ping and notes how many were answered, and when", state_note,
     {{"-H", "HOST", &Options::host, true, "Name or address"},
      {"-c", "COUNT", Number{&Options::count, 1, 0x7FFFFFFF}, true, "Requests to send"},
      {"-W", "MS", Number{&Options::timeout, 1, unbounded}, true,
       "Longest time to an answer; 1, what the device takes for an unset timeout, is a whole second"},
      {"-s", "BYTES", Number{&Options::size, 0, 65507}, true, "Data in a request"}}},
    {"traceroute_diag", "Seeks the route through the host's traceroute and notes its length and the time to the host",
     state_note,
     {{"HOST", "", &Options::host, true, "Name or address"},
      {"SIZE", "", Number{&Options::size, 0, 65000}, true, "Length of a packet, in bytes"},
      {"-q", "TRIES", Number{&Options::tries, 1, 10}, true, "Packets for each hop"},
      {"-m", "HOPS", Number{&Options::max_hops, 1, 255}, true, "After how many hops to give up"},
      {"-w", "S,HERE,NEAR", &Options::wait_times, true,
       "Seconds to wait for an answer; at most HERE times as long as the same hop took, and NEAR times as long as "
       "the next did"},
      {"--savetof", "", &Options::save_to_file, false, "Keep the hops in /tmp/tracerouteResults of the device's root"}}},
    {"udpechoplus_server", "Answers UDP packets with what they hold", echo_note,
     {{"-p", "PORT", Number{&Options::port, 1, 65535}, true, "Port to listen on"},
      {"-i", "INTERFACE", &Options::interface, false, "Interface to listen on"},
      {"-s", "ADDRESS", &Options::source, false, "Answer to this address only"},
      {"-P", "", &Options::echo_plus, false, "Put sequence numbers and times into answers of 20 bytes and more"}}},
};
// clang-format on

[[noreturn]] void refuse(const std::string &reason) {
  throw Failure(state::other, reason);
}

// The leading number counts, as everywhere in the device: "5 times" is 5.
unsigned long number_of(const Declared &option, const Number &wanted, const std::string &text) {
  errno = 0;
  char *end = nullptr;
  const unsigned long number = std::strtoul(text.c_str(), &end, 10);
  if (end == text.c_str() || text[0] == '-' || errno != 0 || number < wanted.least || number > wanted.most)
    refuse(std::string(option.name) + " is " + text + ", not a number from " + std::to_string(wanted.least) +
           " to " + std::to_string(wanted.most));
  return number;
}

// Those of one program.
std::vector<Declared> declared_by(std::string_view tool) {
  const auto known = std::ranges::find(tools, without_instance(tool), &Tool::name);
  if (known == tools.end()) throw std::invalid_argument(std::string(tool) + " is no diagnostics program");
  std::vector<Declared> options = known->options;
  if (tool != known->name) options.push_back(secondary);
  return options;
}

// Reads a command line as the program's options are declared.
class Reader {
public:
  Reader(std::string_view tool, Options &options) : declared_(declared_by(tool)), options_(options) {
    for (size_t i = 0; i < declared_.size(); i++)
      if (const std::string_view name = declared_[i].name; name.starts_with("--"))
        long_names_.push_back(
            {declared_[i].name + 2, no_argument, nullptr, first_long + static_cast<int>(i)});
      else if (declared_[i].has_name())
        letters_.append(name.substr(1)).append(declared_[i].takes_value() ? ":" : "");
    long_names_.push_back({});
  }

  void read(std::vector<std::string> words) {
    words.insert(words.begin(), "");
    std::vector<char *> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string &word : words)
      arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const int count = static_cast<int>(words.size());
    optind = 0; // from the beginning
    for (int found;
         (found = getopt_long(count, arguments.data(), letters_.c_str(), long_names_.data(), nullptr)) != -1;)
      take_found(found);
    while (optind < count)
      take_nameless(words[static_cast<size_t>(optind++)]);
    for (const Declared &each : declared_)
      if (each.required && !given_.contains(&each)) refuse(std::string(each.name) + " is missing");
  }

private:
  static constexpr int nameless = 1, first_long = 0x100; // letters lie between

  void take_found(int found) {
    if (found == nameless) return take_nameless(optarg);
    const std::string letter = {'-', static_cast<char>(found == ':' || found == '?' ? optopt : found)};
    if (found == ':') refuse(letter + " has no value");
    if (found == '?') refuse(optopt != 0 ? "there is no option " + letter : "there is no such long option");
    const auto known = found >= first_long ? declared_.begin() + (found - first_long)
                                           : std::ranges::find(declared_, letter, &Declared::name);
    take(*known, optarg == nullptr ? "" : optarg);
  }

  void take_nameless(const std::string &word) {
    const auto next = std::ranges::find_if(
        declared_, [this](const Declared &each) { return !each.has_name() && !given_.contains(&each); });
    if (next == declared_.end()) refuse("\"" + word + "\" is too much");
    take(*next, word);
  }

  void take(const Declared &option, const std::string &text) {
    if (!given_.insert(&option).second) refuse(std::string(option.name) + " is given twice");
    if (const auto *number = std::get_if<Number>(&option.into))
      options_.*number->into = number_of(option, *number, text);
    else if (const auto *flag = std::get_if<bool Options::*>(&option.into))
      options_.**flag = true;
    else if (text.empty() ||
             text.starts_with('-')) // an empty value leaves no word, and the next option in its place
      refuse(std::string(option.name) + " has no value");
    else
      options_.*std::get<std::string Options::*>(option.into) = text;
  }

  std::vector<Declared> declared_;
  Options &options_;
  std::string letters_ = "-:"; // words come in their order, mistakes are told here
  std::vector<option> long_names_;
  std::set<const Declared *> given_;
};

std::string with_value(const Declared &option) {
  return option.name + std::string(option.value[0] == '\0' ? "" : " ") + option.value;
}

} // namespace

std::string usage(std::string_view tool) {
  const std::vector<Declared> options = declared_by(tool);
  const auto known = std::ranges::find(tools, without_instance(tool), &Tool::name);
  std::string line = "usage: " + std::string(tool), meanings;
  for (const Declared &option : options) {
    const std::string form = with_value(option);
    line += option.required ? " " + form : " [" + form + "]";
    meanings += "  " + form + std::string(std::max<size_t>(form.size(), 14) - form.size() + 2, ' ') +
                option.meaning + "\n";
  }
  return std::string(known->description) + "\n" + line + "\n\n" + meanings + "\n" + known->note;
}

Options options_of(std::string_view tool, const std::vector<std::string> &words) {
  Options options;
  Reader(tool, options).read(words);
  options.secondary = tool != without_instance(tool); // the name decides
  return options;
}

} // namespace kova::diag
