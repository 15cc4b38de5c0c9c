// export: the device's configuration as a request.
#include "kovactl/agent.hpp"
#include "kovactl/command.hpp"
#include "kovactl/commands.hpp"
#include "kovactl/report.hpp"
#include "request/configuration.hpp"

#include <iostream>

namespace kova::ctl {
namespace {

struct ExportOptions {
  std::string prefix;
};

bool fits_a_line(const std::string &value) {
  return value.find('\n') == std::string::npos && !value.ends_with('\r');
}

ExitStatus export_configuration(const Output &output, const ExportOptions &options) {
  start_agent(output);
  const Configuration configuration =
      in_turn([&] { return get_configuration(options.prefix); }, device::Turn::Kind::reading);
  if (configuration.values.empty() && configuration.left_out.empty())
    return output.failure("nothing that can be exported begins with " + quoted(options.prefix));
  if (output.json()) {
    Json values = Json::array();
    for (const auto &[path, value] : configuration.values)
      values.push_back({{"path", path}, {"value", value}});
    output.print(values);
  } else {
    std::string lines;
    const auto leave_out = [&lines](const std::string &path, const std::string &why) {
      lines.append("# left out: ").append(path).append(": ").append(why).append("\n");
    };
    for (const auto &[path, value] : configuration.values)
      if (fits_a_line(value))
        lines.append(path).append("=").append(value).append("\n");
      else
        leave_out(path, "a value with line ends; --json has it");
    for (const Fault &left : configuration.left_out)
      leave_out(left.path, left.detail);
    output.print_document(lines);
  }
  return Success;
}

} // namespace

void add_export(Commands &commands) {
  auto [command, options] = commands.add<ExportOptions>(
      "export", "Write what can be set, but no secrets, as a request for set --file", export_configuration);
  command.words("PREFIX", &options.prefix, "Only the paths that begin so");
}

} // namespace kova::ctl
