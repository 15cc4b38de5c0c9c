#include "device/diag/trace_route.hpp"

#include "device/diag/failure.hpp"
#include "device/diag/host.hpp"
#include "device/file_system.hpp"
#include "device/paths.hpp"

#include <cmath>
#include <sstream>

namespace kova::diag {
namespace {

constexpr const char *unanswered = "*"; // by the hop; also in place of its address

std::string without_scope(const std::string &address) {
  return address.substr(0, address.find('%'));
}

// As many of them, whole, as a value has room for.
std::string joined(const std::vector<std::string> &hosts) {
  constexpr std::size_t longest_value = 255;
  std::string list;
  for (const std::string &host : hosts) {
    const std::string piece = (list.empty() ? "" : ";") + host;
    if (list.size() + piece.size() > longest_value) break;
    list += piece;
  }
  return list;
}

} // namespace

// " 2  192.0.2.1  0.412 ms 192.0.2.9  0.388 ms !H *": number; then for each packet the time, behind the
// address where it is another one than before, or "*".
void Route::take_line(std::string_view line) {
  std::istringstream words{std::string(line)};
  unsigned long number = 0;
  if (!(words >> number)) return;
  hops_ += std::string(line) + "\n";
  hosts_.emplace_back(unanswered);
  length_ = number;
  reached_ = false;
  refusal_.clear();
  total_ms_ = 0;
  answers_ = 0;
  std::string before;
  for (std::string word; words >> word; before = word) {
    if (hosts_.back() == unanswered) hosts_.back() = word;
    if (word[0] == '!') refusal_ = word;
    if (without_scope(word) == without_scope(target_)) reached_ = true;
    if (word != "ms") continue;
    total_ms_ += std::strtod(before.c_str(), nullptr);
    answers_++;
  }
}

Results Route::results() const {
  const std::string last = "hop " + std::to_string(length_);
  if (!reached_ && !refusal_.empty()) throw Failure(state::other, last + " answers " + refusal_);
  if (!reached_) throw Failure(state::too_many_hops, last + " is not " + target_);
  return {{"RSP_TIME", std::to_string(answers_ == 0 ? 0 : std::lround(total_ms_ / answers_))},
          {"HOPS_NUM", std::to_string(length_)},
          {route_hosts, joined(hosts_)}};
}

Results trace_route(const Options &options) {
  const std::string address = numeric_address(options.host);
  Route route(address);
  std::string message;
  const int status = run_program({"traceroute", "-n", "-q", std::to_string(options.tries), "-m",
                                  std::to_string(options.max_hops), "-w", options.wait_times, "--", address,
                                  std::to_string(options.size)},
                                 [&](std::string_view line) {
                                   route.take_line(line);
                                   if (!line.empty()) message = line;
                                 });
  if (status != 0) throw Failure(state::other, "traceroute: " + message);
  if (options.save_to_file)
    device::write_file(
        device::on_device(options.secondary ? "/tmp/sec_tracerouteResults" : "/tmp/tracerouteResults"),
        route.hops());
  return route.results();
}

} // namespace kova::diag
