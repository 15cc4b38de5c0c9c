// fleet exec, get: a command on each device.
#include "kovactl/addressing.hpp"
#include "kovactl/fleet_commands.hpp"
#include "kovactl/fleet_work.hpp"

#include <sstream>

namespace kova::ctl {
namespace {

struct FleetExecOptions {
  std::string directory;
  std::vector<std::string> words; // a command line of this program
};
struct FleetGetOptions {
  std::string directory;
  std::vector<std::string> paths;
};

void print_lines(const Output &output, const std::string &serial, const std::string &text) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);)
    output.print_document(serial + ": " + line + "\n");
}

void complain_lines(const Output &output, const std::string &serial, const std::string &text) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);)
    output.complain(Table{{{serial + ": " + line}}});
}

ExitStatus run_on_each(const Output &output, const std::string &directory,
                       const std::vector<std::string> &words) {
  const Fleet fleet(fleet_directory(directory));
  const auto work = [&](const std::string &, const Output &out) {
    std::vector<std::string> line = words;
    if (out.json()) line.insert(line.begin(), "--json");
    return run_command_line(line);
  };
  const WorkDone done = on_each_device(fleet, fleet.serials(), output, work);
  std::size_t failed = 0;
  Json answers = Json::object();
  for (const DeviceResult &result : done.results) {
    failed += result.well() ? 0U : 1U;
    if (output.json()) {
      answers[result.serial] = result.answer();
      continue;
    }
    print_lines(output, result.serial, result.out);
    complain_lines(output, result.serial, result.messages);
  }
  if (output.json()) output.print(answers);
  if (done.interrupted) output.note("interrupted: the command was not run on all devices");
  if (failed > 0)
    output.note("failed on " + std::to_string(failed) + " of " + std::to_string(done.results.size()) +
                " devices");
  return failed == 0 && !done.interrupted ? Success : Failure;
}

ExitStatus exec(const Output &output, const FleetExecOptions &options) {
  return run_on_each(output, options.directory, options.words);
}

ExitStatus get(const Output &output, const FleetGetOptions &options) {
  std::vector<std::string> words{"get", "--"};
  words.insert(words.end(), options.paths.begin(), options.paths.end());
  return run_on_each(output, options.directory, words);
}

} // namespace

void add_fleet_exec(Commands &group) {
  auto [executing, exec_options] =
      group.add<FleetExecOptions>("exec", "Run a command on each device: fleet exec -- set PATH=VALUE", exec);
  add_fleet_place(executing, exec_options.directory);
  executing.words("COMMAND", &exec_options.words, "A command of kovactl with its words, behind --")
      .required();
  auto [getting, get_options] =
      group.add<FleetGetOptions>("get", "Show values of parameters of each device", get);
  add_fleet_place(getting, get_options.directory);
  getting.words("PATH", &get_options.paths, "Parameters, as get takes them").required();
  getting.complete([](const std::string &word) { return continued(word, Kind::anything, false); });
}

} // namespace kova::ctl
