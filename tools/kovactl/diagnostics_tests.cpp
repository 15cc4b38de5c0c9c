#include "kovactl/diagnostics_tests.hpp"

#include "device/log.hpp"
#include "kovactl/agent.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <thread>

namespace kova::ctl {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr std::string_view state_parameter = "DiagnosticsState";
constexpr std::string_view requested_state = "Requested";
constexpr auto pause = 100ms;

bool runs(const DiagnosticsTest &test) {
  return test.state == requested_state && test.failure.empty();
}

// The test's program tells the reason where the daemon tells its own messages.
std::filesystem::path messages() {
  return device::log_file().parent_path() / "serviced.log";
}

std::string why(const DiagnosticsTest &test) {
  const std::string mark = test.state + ": ";
  std::ifstream file(messages());
  file.seekg(static_cast<std::streamoff>(test.earlier_messages));
  std::string found;
  for (std::string line; std::getline(file, line);)
    if (const size_t at = line.find(mark); at != std::string::npos)
      found = ": " + line.substr(at + mark.size());
  return found;
}

void look_at(DiagnosticsTest &test) {
  const std::string path = test.object + std::string(state_parameter);
  const Reading reading =
      in_turn([&] { return get_values(std::span(&path, 1)); }, device::Turn::Kind::reading);
  if (reading.values.empty()) {
    test.failure = "the state of " + test.name() + " cannot be read";
    return;
  }
  test.state = reading.values.front().text;
  if (test.state.starts_with("Error") || test.state == "None")
    test.failure = test.name() + " ended in " + test.state + why(test);
}

// Removed when the waiting is over.
class ProgressLine {
public:
  explicit ProgressLine(const Output &output) : output_(output) {}
  ~ProgressLine() { output_.progress(""); }
  ProgressLine(const ProgressLine &) = delete;
  ProgressLine &operator=(const ProgressLine &) = delete;

  void show(std::span<const DiagnosticsTest> tests, Clock::duration elapsed) {
    std::string names;
    for (const DiagnosticsTest &test : tests)
      if (runs(test)) names += (names.empty() ? "" : ", ") + test.name();
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(elapsed).count();
    output_.progress(std::string(1, "|/-\\"[turn_++ % 4]) + " " + std::to_string(seconds) +
                     " s, waiting for " + names);
  }

private:
  const Output &output_;
  unsigned turn_ = 0;
};

} // namespace

std::string DiagnosticsTest::name() const {
  const size_t dot = object.rfind('.', object.size() - 2);
  return object.substr(dot + 1, object.size() - dot - 2);
}

std::vector<DiagnosticsTest> tests_asked_for(std::span<const Assignment> request) {
  std::error_code none;
  const std::uintmax_t size = std::filesystem::file_size(messages(), none), earlier = none ? 0 : size;
  std::vector<DiagnosticsTest> tests;
  for (const auto &[path, value] : last_mentions(request))
    if (path.ends_with("." + std::string(state_parameter)) && value == requested_state)
      tests.push_back({path.substr(0, path.size() - state_parameter.size()), value, {}, "", earlier});
  return tests;
}

void await_tests(std::span<DiagnosticsTest> tests, std::chrono::seconds patience, const Output &output) {
  const auto begin = Clock::now();
  ProgressLine line(output);
  for (;; std::this_thread::sleep_for(pause)) {
    const bool served = device::status().serviced.has_value(); // before the look: a last result still counts
    const auto elapsed = Clock::now() - begin;
    for (DiagnosticsTest &test : tests) {
      if (!runs(test)) continue;
      look_at(test);
      test.duration = std::chrono::duration_cast<std::chrono::milliseconds>(elapsed);
      if (!runs(test)) continue;
      if (!served)
        test.failure = "the service daemon is gone: " + test.name() + " will not end";
      else if (elapsed >= patience)
        test.failure =
            test.name() + " is still " + test.state + " after " + std::to_string(patience.count()) + " s";
    }
    if (std::ranges::none_of(tests, runs)) return;
    line.show(tests, elapsed);
  }
}

} // namespace kova::ctl
