#include "kovactl/command.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace kova::ctl {

const Option &Option::required() const {
  option_->required();
  return *this;
}

const Option &Option::check(const std::function<std::string(const std::string &)> &rule) const {
  option_->check(rule);
  return *this;
}

const Option &Option::one_of(const std::vector<std::string> &words) const {
  option_->check(CLI::IsMember(words));
  registry_->values[option_] = [words](const std::string &word) { return beginning_with(word, words); };
  return *this;
}

const Option &Option::needs(const Option &other) const {
  option_->needs(other.option_);
  return *this;
}

const Option &Option::excludes(const Option &other) const {
  option_->excludes(other.option_);
  return *this;
}

Option Command::option(const std::string &names, const std::string &value, Target target,
                       const std::string &help) const {
  CLI::Option *added = std::visit([&](auto *into) { return app_->add_option(names, *into, help); }, target);
  added->type_name(value);
  if (!added->get_positional()) added->allow_extra_args(false);
  return {added, *registry_};
}

Option Command::words(const std::string &what, Target target, const std::string &help) const {
  return option(what, "", target, help);
}

Option Command::flag(const std::string &names, bool &target, const std::string &help) const {
  return {app_->add_flag(names, target, help), *registry_};
}

void Command::complete(Completions words) const {
  registry_->words[app_] = std::move(words);
}

void Command::hide() const {
  app_->group("")->prefix_command();
}

Command Commands::add_command(const char *name, const char *help, const Run &run) const {
  CLI::App *command = group_.add_subcommand(name, help);
  command->footer("Everywhere: --json, --secondary, --device DIR, --color WHEN; see kovactl --help");
  command->callback([&registry = registry_, run] { registry.chosen = run; });
  return {*command, registry_};
}

Commands Commands::group(const char *name, const char *help) const {
  CLI::App *group = group_.add_subcommand(name, help);
  group->require_subcommand(0, 1);
  return {*group, registry_};
}

std::vector<std::string> beginning_with(const std::string &word, const std::vector<std::string> &all) {
  std::vector<std::string> found;
  for (const std::string &each : all)
    if (each.starts_with(word)) found.push_back(each);
  return found;
}

std::string number_rule(const std::string &text) {
  const bool digits = text.find_first_not_of("0123456789") == std::string::npos;
  return digits && !text.empty() && text.size() < 10 ? "" : "\"" + text + "\" is not a number";
}

std::vector<std::string> command_names(const CLI::App &app) {
  std::vector<std::string> names;
  for (const CLI::App *each :
       app.get_subcommands([](const CLI::App *any) { return !any->get_group().empty(); }))
    names.push_back(each->get_name());
  return names;
}

std::vector<std::string> option_names(const CLI::App &app) {
  std::vector<std::string> names;
  for (const CLI::App *each = &app; each != nullptr; each = each->get_parent())
    for (const CLI::Option *option : each->get_options())
      for (const std::string &name : option->get_lnames())
        names.push_back("--" + name);
  std::ranges::sort(names);
  names.erase(std::unique(names.begin(), names.end()), names.end());
  return names;
}

} // namespace kova::ctl
