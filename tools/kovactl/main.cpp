// kovactl: a small agent on the command line. Here are its commands and options; what they do is beside.
#include "device/device.hpp"
#include "kovactl/commands.hpp"
#include "kovactl/completion.hpp"
#include "kovactl/login.hpp"
#include "kovactl/settings.hpp"
#include "kovactl/stores.hpp"
#include "platform/host/device_dir.hpp"

#include <CLI/CLI.hpp>
#include <fcntl.h>
#include <kova.h>
#include <kova/frame.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>

namespace kova::ctl {
namespace {

// The commands with their options. The one that was asked for ends up in `chosen`.
class CommandLine {
public:
  CommandLine() {
    app_.require_subcommand(0, 1); // none at all is noticed after parsing, unknown words before that
    app_.fallthrough();
    app_.set_version_flag("--version", "kovactl " KOVA_VERSION);
    app_.add_flag("--json", arguments_.json, "Answer in JSON, also when something fails");
    app_.add_flag("--secondary", arguments_.secondary, "Act for the secondary management instance");
    app_.add_option("--device", arguments_.device, "Directory of the virtual device (default: $KOVA_DEVICE)")
        ->type_name("DIR")
        ->check([](const std::string &text) {
          return text.empty() ? std::string("it is empty") : std::string();
        });
    add_parameters();
    add_settings();
    add_device();
    add_stores();
    add_login();
    add_completion();
  }

  void parse(int argc, char **argv) { app_.parse(argc, argv); }
  bool complete() const { return static_cast<bool>(chosen_); }
  void answer(const CLI::Success &question) const { app_.exit(question); }
  std::string help() const { return innermost().app->help(innermost().group); }

  std::string mistake(const CLI::ParseError &error) const {
    const auto [app, group] = innermost();
    std::string text = error.what();
    const auto unknown = app_.remaining(true);
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::ExtrasError) && !unknown.empty()) {
      const bool command = !chosen_ && !unknown.front().starts_with('-');
      text =
          (command ? "there is no command \"" : "unexpected argument \"") + shortened(unknown.front()) + "\"";
    }
    return text + "; see " + (group.empty() ? "" : group + " ") + app->get_name() + " --help";
  }
  const Arguments &arguments() const { return arguments_; }
  ExitStatus run(const Output &output) const { return chosen_(output, arguments_); }

private:
  struct Innermost {
    const CLI::App *app;
    std::string group; // the words before its name
  };
  // The command that was asked for, as far as it was understood.
  Innermost innermost() const {
    Innermost found{&app_, ""};
    for (auto inner = app_.get_subcommands(); !inner.empty(); inner = inner.front()->get_subcommands())
      found = {inner.front(), found.group + (found.group.empty() ? "" : " ") + found.app->get_name()};
    return found;
  }

  CLI::App *add(CLI::App &group, const char *name, const char *help, const Command &command) {
    CLI::App *added = group.add_subcommand(name, help);
    added->footer("Everywhere: --json, --secondary, --device DIR; see kovactl --help");
    added->callback([this, command] { chosen_ = command; });
    return added;
  }

  CLI::App *add_group(const char *name, const char *help) {
    CLI::App *group = app_.add_subcommand(name, help);
    group->require_subcommand(0, 1);
    return group;
  }

  void take_names(CLI::App *command, const char *name, const char *help) {
    command->add_option(name, arguments_.names, help)->required()->type_name("");
  }

  void take_path(CLI::App *command, const char *name, const char *help) {
    command->add_option(name, arguments_.names, help)->required()->expected(1)->type_name("");
  }

  CLI::Option *take_assignments(CLI::App *command, const char *name) {
    return command->add_option(name, arguments_.assignments)
        ->required()
        ->check(assignment_rule)
        ->type_name("");
  }

  void take_prefix(CLI::App *command, const char *help) {
    command->add_option("PREFIX", arguments_.prefix, help)->type_name("");
  }

  void add_parameters() {
    take_names(add(app_, "get", "Show values of parameters", on_agent(get)), "PATH",
               "Parameters; a path that ends in \".\" is a whole branch, \"\" is everything");
    CLI::App *set_command = add(app_, "set", "Change parameters in one request", set);
    take_assignments(set_command, "PATH=VALUE")
        ->required(false)
        ->description("These come after those of --file");
    set_command
        ->add_option("--file", arguments_.request_file,
                     "Take the request from FILE, \"-\" is standard input: one PATH=VALUE a line, or JSON")
        ->type_name("FILE");
    set_command->add_flag("--log", arguments_.with_log, "Then show what the device was asked to do");
    CLI::Option *wait = set_command->add_flag("--wait", arguments_.with_tests,
                                              "Wait for the diagnostics tests that the request asks for");
    set_command->add_option("--timeout", arguments_.timeout, "Wait so long at most (default: 120)")
        ->type_name("SECONDS")
        ->needs(wait)
        ->check(number_rule);
    CLI::App *add_command =
        add(app_, "add", "Add a row to a list; its value is set thereafter", row_command(add_row));
    take_path(add_command, "OBJECT.", "A list; kovactl list --lists shows them");
    CLI::App *delete_command =
        add(app_, "delete", "Delete a row of a list; those behind it move up", row_command(delete_row));
    take_path(delete_command, "OBJECT.N.", "A row of a list");
    for (CLI::App *command : {add_command, delete_command})
      command->add_flag("--log", arguments_.with_log, "Then show what the device was asked to do");
    CLI::App *list_command =
        add(app_, "list", "Show the parameters that there are, and what they mean", list);
    take_prefix(list_command, "Only the paths that begin so");
    list_command->add_flag("--writable", arguments_.writable_only, "Only parameters that can be set");
    list_command->add_flag("--lists", arguments_.lists_only, "Only lists, whose rows can be many");
    list_command->add_flag("--paths", arguments_.paths_only,
                           "Only what may follow PREFIX, one level: for completion");
    add(app_, "model", "Write the supported data model as a document", show_model)
        ->add_option("--format", arguments_.format,
                     "xml: device type document, csv: with the device's values, markdown: reference page")
        ->type_name("xml|csv|markdown");
  }

  void add_settings() {
    CLI::App *settings = add_group("settings", "The management server's settings");
    add(*settings, "backup", "Keep them in a file, so that a configuration reset does not lose them",
        on_agent([](const Output &output, const Arguments &) { return back_up_settings(output); }));
    add(*settings, "restore", "Put back those that were kept; the file is removed",
        on_agent([](const Output &output, const Arguments &) { return restore_settings(output); }));
  }

  void add_device() {
    CLI::App *group = add_group("device", "The virtual device itself");
    add(*group, "up", "Create the device if need be, boot it, start its service daemon",
        device_command(device::up));
    add(*group, "down", "Stop the service daemon; the settings stay", device_command(device::down));
    add(*group, "reset", "Back to factory settings: all settings and the log are lost",
        device_command(device::reset));
    add(*group, "status", "Show where the device is and whether it runs", device_command(nullptr));

    CLI::App *log = add(app_, "log", "Show what the device was asked to do",
                        on_device([](const Output &output, const Arguments &arguments) {
                          return show_log(output, device::log_file(), arguments.log);
                        }));
    log->add_option("--tail", arguments_.log.tail, "Only the last N records")
        ->type_name("N")
        ->check(number_rule);
    log->add_flag("--follow", arguments_.log.follow, "Go on with what is asked from now on");
  }

  void add_stores() {
    using A = const Arguments &;
    using O = const Output &;
    CLI::App *nvram = add_group("nvram", "The key/value store");
    CLI::App *get_keys = add(*nvram, "get", "Show keys",
                             on_device([](O output, A a) { return nvram_get(output, a.section, a.names); }));
    CLI::App *set_keys =
        add(*nvram, "set", "Store keys as they are, without any rule",
            on_device([](O output, A a) { return nvram_set(output, a.section, parsed_assignments(a)); }));
    CLI::App *unset_keys =
        add(*nvram, "unset", "Remove keys",
            on_device([](O output, A a) { return nvram_unset(output, a.section, a.names); }));
    CLI::App *list_keys =
        add(*nvram, "list", "Show all keys",
            on_device([](O output, A a) { return nvram_list(output, a.listed_section, a.prefix); }));
    take_names(get_keys, "KEY", "");
    take_assignments(set_keys, "KEY=VALUE");
    take_names(unset_keys, "KEY", "");
    take_prefix(list_keys, "Only the keys that begin so");
    for (CLI::App *command : {get_keys, set_keys, unset_keys})
      command
          ->add_option("-s,--section", arguments_.section,
                       "0: configuration (the default), 9: run-time values")
          ->type_name("N")
          ->check(number_rule);
    list_keys->add_option("-s,--section", arguments_.listed_section, "Only this section")
        ->type_name("N")
        ->check(number_rule);

    CLI::App *tree = add_group("tree", "The configuration tree");
    take_names(
        add(*tree, "get", "Show leaves", on_device([](O output, A a) { return tree_get(output, a.names); })),
        "PATH", "As in /tarn/...");
    take_assignments(add(*tree, "set", "Store leaves as they are, without any rule",
                         on_device([](O output, A a) { return tree_set(output, parsed_assignments(a)); })),
                     "PATH=VALUE");
    take_prefix(add(*tree, "list", "Show all leaves",
                    on_device([](O output, A a) { return tree_list(output, a.prefix); })),
                "Only the leaves at or below this path");
  }

  void add_login() {
    CLI::App *login = add(
        app_, "login", "Try a password of the web interface: that typed, or the first line of standard input",
        on_device([](const Output &output, const Arguments &arguments) {
          return log_in(output, arguments.account);
        }));
    login->add_option("ACCOUNT", arguments_.account, "admin or user")
        ->required()
        ->type_name("")
        ->check(CLI::IsMember(accounts, CLI::ignore_case));
  }

  void add_completion() {
    CLI::App *completion = add_group("completion", "Print a shell's completion script");
    add(*completion, "bash", "For bash: source <(kovactl completion bash)",
        [](const Output &, const Arguments &) {
          std::cout << bash_completion;
          return Success;
        });
  }

  CLI::App app_{"A small agent for the router's TR-069 data model, on a virtual device", "kovactl"};
  Arguments arguments_;
  Command chosen_;
};

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

ExitStatus run(const CommandLine &line) {
  const Arguments &arguments = line.arguments();
  const Output output(arguments.json);
  try {
    choose_device(arguments.device);
    if (arguments.secondary) setSecondaryInstance();
    const ExitStatus status = line.run(output);
    return output.complete() ? status : Failure;
  } catch (const UsageError &error) {
    return output.failure(error.what(), BadUsage);
  } catch (const std::exception &error) {
    return output.failure(error.what());
  }
}

ExitStatus ask_for_command(const CommandLine &line) {
  const Output output(line.arguments().json);
  if (output.json()) return output.failure("a command is required; see kovactl --help", BadUsage);
  std::cerr << line.help();
  return BadUsage;
}

// A file that is opened later must not get the number of a standard stream, and with it what is printed there.
void occupy_standard_streams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    if (fcntl(stream, F_GETFD) < 0) open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

int run(int argc, char **argv) {
  CommandLine line;
  try {
    line.parse(argc, argv);
  } catch (const CLI::Success &question) { // --help, --version
    line.answer(question);
    return Output(false).complete() ? Success : Failure;
  } catch (const CLI::ParseError &error) {
    return Output(asks_for_json(argc, argv)).failure(line.mistake(error), BadUsage);
  }
  return line.complete() ? run(line) : ask_for_command(line);
}

} // namespace
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
