// get: shows values of parameters.
#include "kovactl/addressing.hpp"
#include "kovactl/agent.hpp"
#include "kovactl/command.hpp"
#include "kovactl/commands.hpp"
#include "kovactl/report.hpp"

namespace kova::ctl {
namespace {

struct GetOptions {
  std::vector<std::string> paths;
  bool values_only = false;
};

ExitStatus get(const Output &output, const GetOptions &options) {
  start_agent(output);
  return report(output, read(options.paths), options.values_only);
}

} // namespace

void add_get(Commands &commands) {
  auto [command, options] = commands.add<GetOptions>("get", "Show values of parameters", get);
  command
      .words("PATH", &options.paths,
             "Parameters; a path that ends in \".\" is a whole branch, \"\" is everything.\n"
             "A tail that no other path has will do; *, ? and [] stand for any characters")
      .required();
  command.flag("-v,--values", options.values_only, "Only the values, one a line");
  command.complete([](const std::string &word) { return continued(word, Kind::anything, false); });
}

} // namespace kova::ctl
