// How a command says what it is called, which options it has and what it does. Each command, or family of
// commands, stands in a file of its own; commands.hpp lists them.
#pragma once

#include "kovactl/output.hpp"

#include <CLI/CLI.hpp>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kova::ctl {

using Run = std::function<ExitStatus(const Output &)>;
// What a half-typed word may become.
using Completions = std::function<std::vector<std::string>(const std::string &word)>;

// The command line as the commands have declared it.
struct Registry {
  CLI::App *program = nullptr;
  std::map<const CLI::App *, Completions> words; // of a command's own words
  std::map<const CLI::Option *, Completions> values;
  Run chosen; // the command that was asked for
};

// Where commands are added: the program, or a group of commands such as "device".
class Commands {
public:
  Commands(CLI::App &group, Registry &registry) : group_(group), registry_(registry) {}

  template <typename Options>
  struct Added {
    CLI::App &app;
    Options &options;
  };

  template <typename Options>
  Added<Options> add(const char *name, const char *help, ExitStatus (*run)(const Output &, const Options &)) {
    const auto options = std::make_shared<Options>();
    CLI::App *command = group_.add_subcommand(name, help);
    command->footer("Everywhere: --json, --secondary, --device DIR, --color WHEN; see kovactl --help");
    command->callback([&registry = registry_, options, run] {
      registry.chosen = [options, run](const Output &output) { return run(output, *options); };
    });
    return {*command, *options};
  }

  Commands group(const char *name, const char *help) {
    CLI::App *group = group_.add_subcommand(name, help);
    group->require_subcommand(0, 1);
    return {*group, registry_};
  }

  void complete(const CLI::App &command, Completions words) { registry_.words[&command] = std::move(words); }
  void complete(const CLI::Option *option, Completions values) {
    registry_.values[option] = std::move(values);
  }
  Registry &registry() const { return registry_; }

private:
  CLI::App &group_;
  Registry &registry_;
};

// A whole command line, without the program's name.
ExitStatus run_command_line(std::vector<std::string> words);

// The words that begin so.
std::vector<std::string> beginning_with(const std::string &word, const std::vector<std::string> &all);
// Of a group, without the hidden ones.
std::vector<std::string> command_names(const CLI::App &group);
// The long ones of a command, with those that stand everywhere.
std::vector<std::string> option_names(const CLI::App &command);
// What is wrong with the text of a number, or "".
std::string number_rule(const std::string &text);

} // namespace kova::ctl
