// The model as a table in C, for an agent's author.
#include "kovactl/model_documents.hpp"

namespace kova::ctl {
namespace {

template <typename Shape>
std::string symbol(const model::Accessor<Shape> &accessor) {
  return accessor ? accessor.name : "0";
}

// Those that take indexes have a shape of their own.
bool is_indexed(const model::Parameter &parameter) {
  return parameter.get &&
         std::string_view(parameter.get.name).find("WANConnection") != std::string_view::npos;
}

std::string row(const model::Parameter &parameter) {
  return "  {\"" + std::string(parameter.path) + "\", \"" + std::string(model::name(parameter.type)) +
         "\", " + (parameter.writable() ? "1" : "0") + ", " + symbol(parameter.get) + ", " +
         symbol(parameter.set) + ", " + symbol(parameter.check) + "},\n";
}

} // namespace

std::string accessor_table() {
  std::string text =
      "/* The parameters of libkova with their accessors; 0 where there is none. Those that take indexes are "
      "left "
      "out,\n * and so are the rows of lists. */\n#include <kova.h>\n\n"
      "struct kova_parameter {\n  const char *path, *type;\n  int writable;\n  kova_getter *get;\n"
      "  kova_setter *set;\n  kova_checker *check;\n};\n\n"
      "const struct kova_parameter kova_parameters[] = {\n";
  for (const model::Parameter *parameter : model::parameters())
    if (!is_indexed(*parameter)) text += row(*parameter);
  return text +
         "};\nconst unsigned kova_parameter_count = sizeof kova_parameters / sizeof kova_parameters[0];\n";
}

} // namespace kova::ctl
