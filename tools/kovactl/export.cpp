// export: the device's configuration as a request.
#include "kovactl/agent.hpp"
#include "kovactl/command.hpp"
#include "kovactl/commands.hpp"
#include "kovactl/report.hpp"
#include "request/configuration.hpp"

#include <iostream>

namespace kova::ctl {
namespace {

struct Options {
  std::string prefix;
};

bool fits_a_line(const std::string &value) {
  return value.find('\n') == std::string::npos && !value.ends_with('\r');
}

ExitStatus export_configuration(const Output &output, const Options &options) {
  start_agent(output);
  const Configuration configuration =
      in_turn([&] { return get_configuration(options.prefix); }, device::Turn::Kind::reading);
  if (output.json()) {
    Json values = Json::array();
    for (const auto &[path, value] : configuration.values)
      values.push_back({{"path", path}, {"value", value}});
    output.print(values);
  } else {
    std::string lines;
    for (const auto &[path, value] : configuration.values)
      lines += fits_a_line(value) ? path + "=" + value + "\n"
                                  : "# left out: " + path + ": a value with line ends; --json has it\n";
    for (const Fault &left : configuration.left_out)
      lines += "# left out: " + left.path + ": " + left.detail + "\n";
    output.print_document(lines);
  }
  return Success;
}

} // namespace

void add_export(Commands &commands) {
  auto [command, options] = commands.add<Options>(
      "export", "Write what can be set, but no secrets, as a request for set --file", export_configuration);
  command.add_option("PREFIX", options.prefix, "Only the paths that begin so")->type_name("");
}

} // namespace kova::ctl
