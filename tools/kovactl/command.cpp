#include "kovactl/command.hpp"

#include <algorithm>

namespace kova::ctl {

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
