// completion, complete: the command line as the shells complete it.
#include "kovactl/command.hpp"
#include "kovactl/commands.hpp"
#include "kovactl/completion_scripts.hpp"
#include "platform/host/device_dir.hpp"

#include <CLI/CLI.hpp>

#include <iostream>

namespace kova::ctl {
namespace {

struct CompleteOptions {
  const Registry *registry = nullptr;
  std::vector<std::string> words; // of the command line behind "kovactl"; the last is half-typed
};

const CLI::App *subcommand(const CLI::App &app, const std::string &name) {
  const auto found = app.get_subcommands([&](const CLI::App *each) { return each->get_name() == name; });
  return found.empty() ? nullptr : found.front();
}

const CLI::Option *option_with_value(const CLI::App &program, const CLI::App &app, const std::string &word) {
  for (const CLI::App *each : {&app, &program})
    for (const CLI::Option *option : each->get_options())
      if (option->check_name(word) && option->get_items_expected_max() > 0) return option;
  return nullptr;
}

// The shells hand over the command line in words, of which bash makes three of "A=B".
std::vector<std::string> rejoined(const std::vector<std::string> &words) {
  std::vector<std::string> whole;
  bool open = false;
  for (const std::string &word : words) {
    if (word == "=" && !whole.empty() && !open) {
      whole.back() += word;
      open = true;
    } else if (open) {
      whole.back() += word;
      open = false;
    } else
      whole.push_back(word);
  }
  return whole;
}

std::vector<std::string> completions(const CompleteOptions &options) {
  const Registry &registry = *options.registry;
  const std::vector<std::string> words = rejoined(options.words);
  const std::string word = words.empty() ? "" : words.back();
  const CLI::App *app = registry.program;
  const CLI::Option *pending = nullptr;
  for (size_t i = 0; i + 1 < words.size(); ++i) {
    if (pending) {
      if (pending->check_name("--device")) setenv("KOVA_DEVICE", words[i].c_str(), 1);
      pending = nullptr;
    } else if (words[i].starts_with('-'))
      pending = option_with_value(*registry.program, *app, words[i]);
    else if (const CLI::App *inner = subcommand(*app, words[i]))
      app = inner;
  }
  setenv("KOVA_DEVICE", host::device_dir().c_str(), 1);
  if (pending) {
    const auto values = registry.values.find(pending);
    return values == registry.values.end() ? std::vector<std::string>() : values->second(word);
  }
  if (word.starts_with('-')) return beginning_with(word, option_names(*app));
  if (const auto own = registry.words.find(app); own != registry.words.end()) return own->second(word);
  return beginning_with(word, command_names(*app));
}

ExitStatus complete(const Output &, const CompleteOptions &options) {
  for (const std::string &completion : completions(options))
    std::cout << completion << '\n';
  return Success;
}

template <const char *const &script>
ExitStatus print(const Output &, const NoOptions &) {
  std::cout << script;
  return Success;
}

} // namespace

void add_completion(Commands &commands) {
  Commands completion = commands.group("completion", "Print a shell's completion script");
  completion.add<NoOptions>("bash", "For bash: source <(kovactl completion bash)", print<bash_completion>);
  completion.add<NoOptions>("zsh", "For zsh: source <(kovactl completion zsh)", print<zsh_completion>);
  // What the scripts ask; no command for people.
  auto [asking, options] = commands.add<CompleteOptions>("complete", "", complete);
  options.registry = &commands.registry();
  asking.words("WORD", &options.words);
  asking.hide();
}

} // namespace kova::ctl
