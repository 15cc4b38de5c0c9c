#include "kovactl/model_documents.hpp"
#include "kovactl/model_objects.hpp"
#include "request/allowed.hpp"

#include <algorithm>
#include <cctype>
#include <vector>

namespace kova::ctl {
namespace {

constexpr const char *introduction =
    R"(. `kovactl list` shows the same on the command line, and `kovactl get` the
values; [kovactl](kovactl.md) tells how.

To find a parameter, search this page for its name, or for the path of its object. `{i}` stands for the number of an
instance. Names that begin with `X_KOVA_` are this device's own, all others those of InternetGatewayDevice:1.14 and
VoiceService:1.1. Access is what the device allows: some parameters that are writable there are only reported here. Where
nothing is said of what is allowed, any value of the type is; a pattern is a regular expression of XML Schema.

This page is generated. After a change of the model, bring it up to date:

    kovactl model --format markdown > docs/parameters.md

## Contents

The number behind an object is that of its own parameters.

)";

using Cells = std::vector<std::string>;

std::string code(std::string_view text) {
  return "`" + std::string(text) + "`";
}

std::string counted(size_t count, const std::string &what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string markdown_escaped(std::string_view text, std::string_view special = "\\|`*<[") {
  std::string result;
  for (const char c : text) {
    if (special.find(c) != std::string_view::npos) result += '\\';
    result += c;
  }
  return result;
}

// That of a heading, as the usual renderers make it.
std::string anchor(std::string_view heading) {
  std::string result = "#";
  for (const char c : heading)
    if (c == '_' || std::isalnum(static_cast<unsigned char>(c)))
      result += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return result;
}

// The columns but the last are as wide as their widest cell, for those who read the source.
std::string markdown_table(const std::vector<Cells> &rows) {
  std::vector<size_t> widths(rows.front().size());
  for (const Cells &row : rows)
    for (size_t i = 0; i + 1 < row.size(); ++i)
      widths[i] = std::max(widths[i], row[i].size());
  std::string text;
  for (const Cells &row : rows) {
    for (size_t i = 0; i < row.size(); ++i)
      text += "| " + row[i] + std::string(std::max(widths[i], row[i].size()) - row[i].size() + 1, ' ');
    text += "|\n";
    if (&row != &rows.front()) continue;
    for (const size_t width : widths)
      text += "|" + std::string(std::max<size_t>(width, 1) + 2, '-');
    text += "|\n";
  }
  return text;
}

// Words with what they mean; of a text the pattern too, unless its type says as much.
std::string allowed_cell(const ModelParameter &parameter) {
  if (!parameter.parameter) return "";
  const request::AllowedValues allowed = request::allowed_values(*parameter.parameter);
  std::string text;
  if (!allowed.range)
    for (const auto &[word, meaning] : allowed.words)
      text +=
          (text.empty() ? "" : "; ") + code(word) + (meaning.empty() ? "" : " " + markdown_escaped(meaning));
  if (!text.empty()) return text + (allowed.takes_empty ? ", or nothing" : "");
  text = markdown_escaped(allowed.text);
  const bool plain = name(parameter.type) == name(model::Type::String) && !allowed.pattern.empty();
  return text + (plain ? ": `" + markdown_escaped(allowed.pattern, "|") + "`" : "");
}

std::string parameter_table(const ModelObject &object) {
  std::vector<Cells> rows = {{"Parameter", "Type", "Access", "Unit", "Meaning", "Allowed"}};
  for (const ModelParameter &parameter : object.parameters)
    rows.push_back({code(parameter.name), std::string(name(parameter.type)),
                    std::string(name(parameter.access)), markdown_escaped(parameter.unit),
                    markdown_escaped(parameter.meaning), allowed_cell(parameter)});
  return markdown_table(rows);
}

// Where the object is on this device, unless its name says it.
std::string whereabouts(const ModelObject &object) {
  std::vector<std::string_view> paths(object.instances.begin(), object.instances.end());
  std::ranges::stable_sort(paths, {}, &std::string_view::size); // 10 behind 9
  if (object.is_list) {
    const std::string_view list = paths.front().substr(0, paths.front().find("{i}"));
    return "Rows of the list " + code(list) +
           (object.rows_writable ? ": they can be added and deleted.\n\n" : ": they are only read.\n\n");
  }
  if (paths.size() > 1)
    return counted(paths.size(), "instance") + ": " + code(paths.front()) + " to " + code(paths.back()) +
           ".\n\n";
  return paths.front() == object.path ? "" : "Instance: " + code(paths.front()) + "\n\n";
}

std::string section(const ModelObject &object) {
  const bool is_branch = std::ranges::count(object.path, '.') <= 2;
  std::string text = (is_branch ? "## " : "### ") + object.path + "\n\n" + whereabouts(object);
  return text + (object.parameters.empty() ? "No parameters of its own.\n" : parameter_table(object)) + "\n";
}

// A list of links, indented as the objects are in each other.
std::string contents(const std::vector<ModelObject> &objects) {
  std::string text;
  std::vector<std::string_view> outer;
  for (const ModelObject &object : objects) {
    while (!outer.empty() && !object.path.starts_with(outer.back()))
      outer.pop_back();
    size_t known = outer.empty() ? 0 : outer.back().size();
    if (object.path.compare(known, 1, "{") == 0) known = object.path.rfind('.', known - 2) + 1;
    const std::string indent(outer.empty() ? 0 : 2 * (outer.size() - 1), ' ');
    text += indent + "- [" + object.path.substr(known) + "](" + anchor(object.path) + ") " +
            std::to_string(object.parameters.size()) + "\n";
    outer.push_back(object.path);
  }
  return text;
}

} // namespace

std::string markdown_page() {
  const std::vector<ModelObject> objects = model_objects();
  size_t count = 0;
  for (const ModelObject &object : objects)
    count += object.parameters.size();
  std::string text = "# Parameters\n\n" + counted(count, "parameter") + " in " +
                     counted(objects.size(), "object") + introduction + contents(objects) + "\n";
  for (const ModelObject &object : objects)
    text += section(object);
  text.pop_back(); // the blank line behind the last table
  return text;
}

} // namespace kova::ctl
