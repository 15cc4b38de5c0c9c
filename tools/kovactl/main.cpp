// kovactl: a small agent on the command line.
#include "kovactl/command.hpp"
#include "kovactl/commands.hpp"
#include "platform/host/device_dir.hpp"
#include "request/request_text.hpp"
#include "request/shortened.hpp"
#include "request/spelling.hpp"

#include <CLI/CLI.hpp>
#include <fcntl.h>
#include <kova.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>

namespace kova::ctl {
namespace {

constexpr void (*commands[])(Commands &) = {
    add_get,    add_set,   add_rows,     add_list,   add_find,       add_watch,
    add_export, add_model, add_settings, add_device, add_fleet,      add_inform,
    add_log,    add_nvram, add_tree,     add_login,  add_completion, add_help,
};

class CommandLine {
public:
  CommandLine() {
    registry_.program = &program_;
    program_.require_subcommand(0, 1); // none at all is noticed after parsing, unknown words before that
    program_.fallthrough();
    program_.set_version_flag("-V,--version", "kovactl " KOVA_VERSION);
    const Command everywhere(program_, registry_);
    everywhere.flag("--json", json_, "Answer in JSON, also when something fails");
    everywhere.flag("--secondary", secondary_, "Act for the secondary management instance");
    everywhere.option("--device", "DIR", &device_, "Directory of the virtual device (default: $KOVA_DEVICE)")
        .check([](const std::string &text) { return text.empty() ? "it is empty" : ""; });
    everywhere.option("--color", "WHEN", &colour_, "auto, always or never (default: auto)").one_of(colours);
    Commands all(program_, registry_);
    for (const auto add : commands)
      add(all);
  }

  void parse(int argc, char **argv) { program_.parse(argc, argv); }
  bool complete() const { return static_cast<bool>(registry_.chosen); }
  void answer(const CLI::Success &question) const { program_.exit(question); }
  std::string help() const { return innermost().app->help(innermost().group); }

  std::string mistake(const CLI::ParseError &error) const {
    const auto [app, group] = innermost();
    std::string text = error.what();
    const auto unknown = program_.remaining(true);
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::ExtrasError) && !unknown.empty()) {
      const bool command = !registry_.chosen && !unknown.front().starts_with('-');
      text = (command ? "there is no command " : "unexpected argument ") + request::quoted(unknown.front());
      const std::string likely = request::likely_name(unknown.front(), names_of(*app, command));
      if (!likely.empty()) text += "; did you mean \"" + likely + "\"?";
    }
    return text + "; see " + (group.empty() ? "" : group + " ") + app->get_name() + " --help";
  }

  Output output() const { return Output(json_, colour_); }
  ExitStatus run(const Output &output) const;

private:
  static const std::vector<std::string> colours;

  struct Innermost {
    const CLI::App *app;
    std::string group; // the words before its name
  };
  // The command that was asked for, as far as it was understood.
  Innermost innermost() const {
    Innermost found{&program_, ""};
    for (auto inner = program_.get_subcommands(); !inner.empty(); inner = inner.front()->get_subcommands())
      found = {inner.front(), found.group + (found.group.empty() ? "" : " ") + found.app->get_name()};
    return found;
  }

  static std::vector<std::string> names_of(const CLI::App &app, bool of_commands) {
    return of_commands ? command_names(app) : option_names(app);
  }

  CLI::App program_{"A small agent for the router's TR-069 data model, on a virtual device", "kovactl"};
  Registry registry_;
  bool json_ = false, secondary_ = false;
  std::string device_, colour_ = colours.front();
};

const std::vector<std::string> CommandLine::colours = {"auto", "always", "never"};

bool asks_for_json(int argc, char **argv) {
  for (int i = 1; i < argc; ++i)
    if (std::string_view(argv[i]) == "--json") return true;
  return false;
}

// The stores, the service daemon and the path redirection all find the device by this variable.
void choose_device(const std::string &directory) {
  if (!directory.empty()) setenv("KOVA_DEVICE", directory.c_str(), 1);
  setenv("KOVA_DEVICE", host::device_dir().c_str(), 1);
}

ExitStatus CommandLine::run(const Output &output) const {
  try {
    choose_device(device_);
    if (secondary_) setSecondaryInstance();
    const ExitStatus status = registry_.chosen(output);
    return output.complete() ? status : Failure;
  } catch (const request::UsageError &error) {
    return output.failure(error.what(), BadUsage);
  } catch (const std::filesystem::filesystem_error &error) {
    return output.failure(error.path1().string() + ": " + error.code().message());
  } catch (const std::exception &error) {
    return output.failure(error.what());
  }
}

ExitStatus ask_for_command(const CommandLine &line) {
  const Output output = line.output();
  if (output.json()) return output.failure("a command is required; see kovactl --help", BadUsage);
  std::cerr << line.help();
  return BadUsage;
}

// A file that is opened later must not get the number of a standard stream, and with it what is printed
// there.
void occupy_standard_streams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    if (fcntl(stream, F_GETFD) < 0) open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

ExitStatus run(int argc, char **argv) {
  CommandLine line;
  try {
    line.parse(argc, argv);
  } catch (const CLI::Success &question) { // --help, --version
    line.answer(question);
    return Output(false).complete() ? Success : Failure;
  } catch (const CLI::ParseError &error) {
    return Output(asks_for_json(argc, argv)).failure(line.mistake(error), BadUsage);
  }
  return line.complete() ? line.run(line.output()) : ask_for_command(line);
}

} // namespace

ExitStatus run_command_line(std::vector<std::string> words) {
  words.insert(words.begin(), "kovactl");
  std::vector<char *> arguments;
  arguments.reserve(words.size());
  for (std::string &word : words)
    arguments.push_back(word.data());
  return run(static_cast<int>(arguments.size()), arguments.data());
}

} // namespace kova::ctl

int main(int argc, char **argv) {
  try {
    kova::ctl::occupy_standard_streams();
    return kova::ctl::run(argc, argv);
  } catch (const std::exception &error) {
    std::fprintf(stderr, "kovactl: %s\n", error.what());
    return kova::ctl::Failure;
  }
}
