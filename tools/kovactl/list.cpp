// list, find: the parameters that there are, and what they mean.
#include "kovactl/addressing.hpp"
#include "kovactl/agent.hpp"
#include "kovactl/command.hpp"
#include "kovactl/commands.hpp"
#include "kovactl/report.hpp"
#include "request/spelling.hpp"

#include <algorithm>
#include <deque>

namespace kova::ctl {
namespace {

struct ListOptions {
  std::string prefix;
  std::vector<std::string> words;
  bool writable_only = false, lists_only = false;
};

bool is_list(const Listed &listed) {
  return listed.path.find("{i}") != std::string_view::npos;
}

// Whatever begins so, with the rows that a list has now behind their list. The paths of rows live in `names`.
std::vector<Listed> with_rows(std::string_view prefix, std::deque<std::string> &names) {
  const bool has_rows = has_device();
  std::vector<Listed> found;
  for (const Listed &listed : starting_with("")) {
    if (listed.path.starts_with(prefix)) found.push_back(listed);
    if (!has_rows || !is_list(listed)) continue;
    const model::RowList &list = *std::ranges::find(model::lists(), listed.path, &model::RowList::path);
    const size_t count = in_turn([&] { return list.rows().size(); }, device::Turn::Kind::reading);
    for (size_t i = 1; i <= count; ++i) {
      const std::string &path =
          names.emplace_back(list.instance(static_cast<int>(i)) + std::string(list.member()));
      if (!path.starts_with(prefix)) continue;
      found.push_back(listed);
      found.back().path = path;
    }
  }
  return found;
}

ExitStatus list(const Output &output, const ListOptions &options) {
  std::deque<std::string> row_names;
  std::vector<Listed> wanted = with_rows(options.prefix, row_names);
  const bool known = !wanted.empty();
  if (options.writable_only) std::erase_if(wanted, [](const Listed &listed) { return !listed.writable(); });
  if (options.lists_only) std::erase_if(wanted, [](const Listed &listed) { return !is_list(listed); });
  if (wanted.empty()) {
    const std::string likely = known ? "" : likely_path(options.prefix);
    return output.failure(
        "no " + std::string(known ? "such " : "") + "parameter begins with " + quoted(options.prefix) +
        (likely.empty() ? "; kovactl find looks for words anywhere" : "; did you mean \"" + likely + "\"?"));
  }
  report(output, wanted);
  return Success;
}

ExitStatus find(const Output &output, const ListOptions &options) {
  std::vector<Listed> found = starting_with("");
  for (const std::string &word : options.words)
    std::erase_if(found, [wanted = lower(word)](const Listed &listed) {
      return lower(listed.path).find(wanted) == std::string::npos &&
             lower(listed.meaning).find(wanted) == std::string::npos;
    });
  if (found.empty()) return output.failure("no parameter has that in its path or its meaning");
  report(output, found);
  return Success;
}

} // namespace

void add_list(Commands &commands) {
  auto [command, options] =
      commands.add<ListOptions>("list", "Show the parameters that there are, and what they mean", list);
  command.words("PREFIX", &options.prefix, "Only the paths that begin so");
  command.flag("--writable", options.writable_only, "Only parameters that can be set");
  command.flag("--lists", options.lists_only, "Only lists, whose rows can be many");
  command.complete([](const std::string &word) { return continued(word, Kind::anything, false); });
}

void add_find(Commands &commands) {
  auto [command, options] = commands.add<ListOptions>(
      "find", "Show the parameters that have all words in path or meaning, in any case", find);
  command.words("WORD", &options.words).required();
}

} // namespace kova::ctl
