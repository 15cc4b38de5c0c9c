// How a command says what it is called, which options it has and what it does. Each command, or family of
// commands, stands in a file of its own; commands.hpp lists them. The library that reads the command line is
// known to few files only: its headers take long to compile.
#pragma once

#include "kovactl/output.hpp"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

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

// Where the words of an option go.
using Target = std::variant<std::string *, std::optional<std::string> *, std::vector<std::string> *, int *,
                            std::optional<int> *>;

class Option {
public:
  Option(CLI::Option *option, Registry &registry) : option_(option), registry_(&registry) {}
  const Option &required() const;
  // `rule` tells what is wrong with a word, or "".
  const Option &check(const std::function<std::string(const std::string &)> &rule) const;
  const Option &one_of(const std::vector<std::string> &words) const; // completes them, too
  const Option &needs(const Option &other) const;
  const Option &excludes(const Option &other) const;

private:
  CLI::Option *option_;
  Registry *registry_;
};

// A command or a group of commands, and its options. `names` as in "-s,--section".
class Command {
public:
  Command(CLI::App &app, Registry &registry) : app_(&app), registry_(&registry) {}
  // Words without a name; a vector takes all that are left.
  Option words(const std::string &what, Target target, const std::string &help = "") const;
  // An option with a value; one with a vector may be given again.
  Option option(const std::string &names, const std::string &value, Target target,
                const std::string &help) const;
  Option flag(const std::string &names, bool &target, const std::string &help) const;
  void complete(Completions words) const;
  // Not for people: help does not show it, and all that follows is its words.
  void hide() const;

private:
  CLI::App *app_;
  Registry *registry_;
};

// Of a command that has none of its own.
struct NoOptions {};

// Where commands are added: the program, or a group of commands such as "device".
class Commands {
public:
  Commands(CLI::App &group, Registry &registry) : group_(group), registry_(registry) {}

  template <typename Options>
  struct Added {
    Command command;
    Options &options;
  };

  template <typename Options>
  Added<Options> add(const char *name, const char *help, ExitStatus (*run)(const Output &, const Options &)) {
    const auto options = std::make_shared<Options>();
    return {add_command(name, help, [options, run](const Output &output) { return run(output, *options); }),
            *options};
  }
  Commands group(const char *name, const char *help) const;
  Registry &registry() const { return registry_; }

private:
  Command add_command(const char *name, const char *help, const Run &run) const;

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
