#include "device/diag/ping.hpp"

#include "device/diag/failure.hpp"
#include "device/diag/host.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numeric>

namespace kova::diag {
namespace {

constexpr unsigned long unset_timeout = 1, second = 1000, longest_wait = 2'000'000;

// Seconds, as ping takes them.
std::string wait_of(unsigned long milliseconds) {
  char text[32];
  std::snprintf(text, sizeof text, "%lu.%03lu", milliseconds / second, milliseconds % second);
  return text;
}

[[noreturn]] void fail_with(const std::string &message) {
  const bool not_allowed =
      message.find("permitted") != std::string::npos || message.find("denied") != std::string::npos;
  throw Failure(not_allowed ? state::internal : state::other, message);
}

} // namespace

void PingAnswers::take_line(std::string_view line) {
  if (line.find(" bytes from ") == std::string_view::npos || line.find("(DUP!)") != std::string_view::npos)
    return;
  const std::size_t at = line.find("time=");
  // A packet too small for a time stamp is answered without a time.
  const double time =
      at == std::string_view::npos ? 0 : std::strtod(std::string(line.substr(at + 5)).c_str(), nullptr);
  if (time <= longest_ms_) times_.push_back(time);
}

Results PingAnswers::results(unsigned long sent) const {
  const auto whole = [](double time) { return std::to_string(std::lround(time)); };
  double shortest = 0, longest = 0, average = 0;
  if (!times_.empty()) {
    shortest = *std::ranges::min_element(times_);
    longest = *std::ranges::max_element(times_);
    average = std::accumulate(times_.begin(), times_.end(), 0.0) / static_cast<double>(times_.size());
  }
  const unsigned long answered = std::min<unsigned long>(times_.size(), sent);
  return {{"SUC_CNT", std::to_string(answered)},
          {"FAI_CNT", std::to_string(sent - answered)},
          {"AVG_TIME", whole(average)},
          {"MIN_TIME", whole(shortest)},
          {"MAX_TIME", whole(longest)}};
}

Results ping(const Options &options) {
  const std::string address = numeric_address(options.host);
  const unsigned long timeout = options.timeout == unset_timeout ? second : options.timeout;
  PingAnswers answers(static_cast<double>(timeout));
  std::string message;
  const int status = run_program({"ping", "-n", "-c", std::to_string(options.count), "-W",
                                  wait_of(std::min(timeout, longest_wait)), "-s",
                                  std::to_string(options.size), "--", address},
                                 [&](std::string_view line) {
                                   answers.take_line(line);
                                   if (line.starts_with("ping:")) message = line;
                                 });
  constexpr int some_unanswered = 1;
  if (status != 0 && status != some_unanswered)
    fail_with(message.empty() ? "ping ended with status " + std::to_string(status) : message);
  return answers.results(options.count);
}

} // namespace kova::diag
