// nvram: the key/value store, behind the back of the accessors and their rules.
#include "kovactl/agent.hpp"
#include "kovactl/command.hpp"
#include "kovactl/commands.hpp"
#include "kovactl/request.hpp"
#include "platform/host/nvram_admin.hpp"

#include <algorithm>

namespace kova::ctl {
namespace {

struct NvramOptions {
  int section = host::configuration_section;
  std::vector<std::string> words; // keys, or KEY=VALUE
};
struct NvramListOptions {
  std::optional<int> section;
  std::string prefix;
};

void show(const Output &output, const std::vector<host::NvramEntry> &entries) {
  Table table;
  Json array = Json::array();
  for (const auto &[section, key, value] : entries) {
    table.push_back({{std::to_string(section), Style::Faint}, {key}, {value, Style::Bold}});
    array.push_back({{"section", section}, {"key", key}, {"value", value}});
  }
  output.json() ? output.print(array) : output.print(table);
}

// What to say of a key that a section does not have: where else there is one.
std::string absence(int section, const std::string &key) {
  std::string text = "there is no \"" + key + "\" in section " + std::to_string(section);
  for (const host::NvramEntry &entry : host::nvram_entries())
    if (entry.key == key) return text + "; section " + std::to_string(entry.section) + " has one";
  return text;
}

ExitStatus get(const Output &output, const NvramOptions &options) {
  boot(output);
  const device::Turn turn(device::Turn::Kind::reading);
  const std::vector<host::NvramEntry> all = host::nvram_entries(options.section); // one state of the store
  std::vector<host::NvramEntry> entries;
  for (const std::string &key : options.words) {
    const auto entry = std::ranges::find(all, key, &host::NvramEntry::key);
    if (entry == all.end()) return output.failure(absence(options.section, key));
    entries.push_back(*entry);
  }
  show(output, entries);
  return Success;
}

ExitStatus set(const Output &output, const NvramOptions &options) {
  boot(output);
  std::vector<host::NvramEntry> entries;
  for (const std::string &text : options.words) {
    const auto [key, value] = as_assignment(text);
    entries.push_back({options.section, key, value});
  }
  {
    const device::Turn turn(device::Turn::Kind::changing);
    host::nvram_store(entries);
  }
  for (const device::Daemon &agent : device::management_agents)
    if (std::ranges::find(entries, agent.setting, &host::NvramEntry::key) != entries.end())
      device::start_agents();
  show(output, entries);
  return Success;
}

ExitStatus unset(const Output &output, const NvramOptions &options) {
  boot(output);
  const device::Turn turn(device::Turn::Kind::changing);
  for (const std::string &key : options.words)
    if (!host::nvram_find(options.section, key)) return output.failure(absence(options.section, key));
  for (const std::string &key : options.words)
    host::nvram_remove(options.section, key);
  if (output.json()) output.print(Json{{"removed", options.words}});
  return Success;
}

ExitStatus list(const Output &output, const NvramListOptions &options) {
  boot(output);
  const device::Turn turn(device::Turn::Kind::reading);
  std::vector<host::NvramEntry> entries = host::nvram_entries(options.section);
  std::erase_if(entries,
                [&](const host::NvramEntry &entry) { return !entry.key.starts_with(options.prefix); });
  show(output, entries);
  return Success;
}

std::vector<std::string> complete_key(const std::string &word) {
  std::vector<std::string> found;
  if (has_device())
    for (const host::NvramEntry &entry : host::nvram_entries())
      if (entry.key.starts_with(word)) found.push_back(entry.key);
  return found;
}

std::vector<std::string> complete_assignment_of_key(const std::string &word) {
  std::vector<std::string> found;
  if (word.find('=') != std::string::npos) return found;
  for (const std::string &key : complete_key(word))
    found.push_back(key + "=");
  return found;
}

constexpr const char *section_help = "0: configuration (the default), 9: run-time values";

} // namespace

void add_nvram(Commands &commands) {
  Commands nvram = commands.group("nvram", "The key/value store");
  const auto add = [&](const char *name, const char *help,
                       ExitStatus (*run)(const Output &, const NvramOptions &), const char *words,
                       const Completions &completions) {
    auto [command, options] = nvram.add<NvramOptions>(name, help, run);
    command.option("-s,--section", "N", &options.section, section_help).check(number_rule);
    command.complete(completions);
    return command.words(words, &options.words).required();
  };
  add("get", "Show keys", get, "KEY", complete_key);
  add("set", "Store keys as they are, without any rule", set, "KEY=VALUE", complete_assignment_of_key)
      .check(assignment_rule);
  add("unset", "Remove keys", unset, "KEY", complete_key);

  auto [listing, options] = nvram.add<NvramListOptions>("list", "Show all keys", list);
  listing.words("PREFIX", &options.prefix, "Only the keys that begin so");
  listing.option("-s,--section", "N", &options.section, "Only this section").check(number_rule);
  listing.complete(complete_key);
}

} // namespace kova::ctl
