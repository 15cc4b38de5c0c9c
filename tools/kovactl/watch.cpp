// watch: values as they change.
#include "kovactl/addressing.hpp"
#include "kovactl/agent.hpp"
#include "kovactl/command.hpp"
#include "kovactl/commands.hpp"
#include "kovactl/report.hpp"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <deque>
#include <map>
#include <thread>

namespace kova::ctl {
namespace {

struct WatchOptions {
  std::vector<std::string> paths;
  int interval = 1, times = 0;
};

// The number that a value is or begins with ("-95", "12.3 MB").
std::optional<double> number_of(const std::string &value) {
  char *end = nullptr;
  const double number = std::strtod(value.c_str(), &end);
  return end != value.c_str() && (*end == '\0' || *end == ' ') ? std::optional(number) : std::nullopt;
}

class Curve {
public:
  void add(const std::string &value) {
    const auto number = number_of(value);
    if (!number) return numbers_.clear();
    numbers_.push_back(*number);
    if (numbers_.size() > longest) numbers_.pop_front();
  }
  // From the lowest number to the highest.
  std::string drawn() const {
    static constexpr const char *steps[] = {"▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};
    if (numbers_.size() < 2) return "";
    const auto [low, high] = std::ranges::minmax(numbers_);
    std::string text;
    for (const double number : numbers_)
      text += steps[high > low ? static_cast<size_t>((number - low) / (high - low) * 7.0) : 0];
    return text;
  }

private:
  static constexpr size_t longest = 40;
  std::deque<double> numbers_;
};

struct Watched {
  std::string value;
  Curve curve;
};

std::string now() {
  const std::time_t seconds = std::time(nullptr);
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", std::gmtime(&seconds));
  return text;
}

// Each value that differs from the last one shown, as it comes.
void show_changes(const Output &output, const std::vector<Value> &changed) {
  const std::string time = now();
  Table table;
  for (const Value &value : changed)
    if (output.json())
      output.print_line({{"time", time}, {"path", value.path}, {"value", value.text}});
    else
      table.push_back({{time, Style::Faint}, {value.path}, {value.text, Style::Bold}});
  if (!output.json()) output.print(table);
}

Table as_table(const std::map<std::string, Watched> &watched) {
  Table table;
  for (const auto &[path, each] : watched)
    table.push_back({{path}, {each.value, Style::Bold}, {each.curve.drawn(), Style::Faint}});
  return table;
}

ExitStatus watch(const Output &output, const WatchOptions &options) {
  start_agent(output);
  std::map<std::string, Watched> watched;
  for (int round = 0; options.times == 0 || round < options.times; ++round) {
    if (round > 0) std::this_thread::sleep_for(std::chrono::seconds(options.interval));
    const Reading reading = read(options.paths);
    if (!reading.faults.empty() && reading.values.empty()) return report(output, reading);
    std::vector<Value> changed;
    for (const Value &value : reading.values) {
      const auto [at, is_new] = watched.try_emplace(value.path);
      if (is_new || at->second.value != value.text) changed.push_back(value);
      at->second.value = value.text;
      at->second.curve.add(value.text);
    }
    if (output.on_terminal())
      output.print_again(as_table(watched));
    else
      show_changes(output, changed);
    if (!output.complete()) return Failure;
  }
  return Success;
}

} // namespace

void add_watch(Commands &commands) {
  auto [command, options] = commands.add<WatchOptions>(
      "watch", "Show values as they change, numbers with a curve on a terminal", watch);
  command.words("PATH", &options.paths, "As for get").required();
  command.option("--interval", "SECONDS", &options.interval, "Look so often (default: 1)").check(number_rule);
  command.option("--times", "N", &options.times, "Look so many times, then end").check(number_rule);
  command.complete([](const std::string &word) { return continued(word, Kind::anything, false); });
}

} // namespace kova::ctl
