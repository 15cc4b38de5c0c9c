// model: the supported data model as a document.
#include "kovactl/agent.hpp"
#include "kovactl/command.hpp"
#include "kovactl/commands.hpp"
#include "kovactl/model_documents.hpp"
#include "kovactl/report.hpp"

namespace kova::ctl {
namespace {

struct ModelOptions {
  std::string format;
};

ExitStatus show_values(const Output &output) {
  start_agent(output);
  const std::string everything;
  const Reading reading = read(std::span(&everything, 1));
  output.print_document(csv_table(reading));
  return complain(output, reading.faults);
}

struct Format {
  const char *name, *help;
  std::string (*document)(); // nullptr: that of the device's values
};
constexpr Format formats[] = {
    {"datamodel", "data model document", data_model_document},
    {"devicetype", "device type document", device_type_document},
    {"xml", "the same", device_type_document},
    {"csv", "with the device's values", nullptr},
    {"markdown", "reference page", markdown_page},
    {"c", "table of the accessors", accessor_table},
};

std::vector<std::string> format_names() {
  std::vector<std::string> names;
  for (const Format &format : formats)
    names.emplace_back(format.name);
  return names;
}

ExitStatus show_model(const Output &output, const ModelOptions &options) {
  if (output.json()) throw UsageError("the model is not written in JSON; kovactl list --json is");
  for (const Format &format : formats) {
    if (options.format != format.name) continue;
    if (!format.document) return show_values(output);
    output.print_document(format.document());
  }
  return Success;
}

} // namespace

void add_model(Commands &commands) {
  auto [command, options] =
      commands.add<ModelOptions>("model", "Write the supported data model as a document", show_model);
  std::string help;
  for (const Format &format : formats)
    help += (help.empty() ? "" : ", ") + std::string(format.name) + ": " + format.help;
  command.option("--format", "FORMAT", &options.format, help).required().one_of(format_names());
}

} // namespace kova::ctl
