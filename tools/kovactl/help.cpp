// help: how a command is used.
#include "kovactl/command.hpp"
#include "kovactl/commands.hpp"
#include "kovactl/request.hpp"
#include "request/spelling.hpp"

#include <CLI/CLI.hpp>

namespace kova::ctl {
namespace {

struct HelpOptions {
  const Registry *registry = nullptr;
  std::vector<std::string> command;
};

ExitStatus help(const Output &output, const HelpOptions &options) {
  const CLI::App *app = options.registry->program;
  std::string before;
  for (const std::string &name : options.command) {
    const auto found = app->get_subcommands([&](const CLI::App *each) { return each->get_name() == name; });
    if (found.empty()) {
      const std::string likely = likely_name(name, command_names(*app));
      throw UsageError("there is no command " + quoted(name) +
                       (likely.empty() ? "" : "; did you mean \"" + likely + "\"?"));
    }
    before += (before.empty() ? "" : " ") + app->get_name();
    app = found.front();
  }
  output.print_document(app->help(before));
  return Success;
}

} // namespace

void add_help(Commands &commands) {
  auto [command, options] = commands.add<HelpOptions>("help", "Show how a command is used", help);
  options.registry = &commands.registry();
  command.words("COMMAND", &options.command);
  command.complete([&registry = commands.registry()](const std::string &word) {
    return beginning_with(word, command_names(*registry.program));
  });
}

} // namespace kova::ctl
