// The model as tables in C, for an agent's author.
#include "kovactl/model_documents.hpp"

namespace kova::ctl {
namespace {

constexpr const char *types =
    R"(/* The parameters and lists of libkova with their accessors; 0 where there is none. */
#include <kova.h>

struct kova_parameter {
  const char *path, *type;
  int writable;
  kova_getter *get;
  kova_setter *set;
  kova_checker *check;
};
/* Its rows are OBJECT.1.MEMBER, OBJECT.2.MEMBER, ... */
struct kova_list {
  const char *object, *member;
  kova_row_getter *get;
  kova_row_add *add;
  kova_row_setter *set;
  kova_row_delete *remove;
};

/* Those that take indexes have one instance of everything. */
)";

template <typename Shape>
std::string symbol(const model::Accessor<Shape> &accessor) {
  if (!accessor) return "0";
  return (accessor.indexes > 0 ? "first_" : "") + std::string(accessor.name);
}

// A function of the shape without indexes, where the library's takes some.
template <typename Shape>
std::string wrapper(const model::Accessor<Shape> &accessor, const std::string &parameters,
                    const std::string &arguments) {
  if (accessor.indexes == 0) return "";
  std::string indexes;
  for (int i = 0; i < accessor.indexes; ++i)
    indexes += "1, ";
  return "static int " + symbol(accessor) + "(" + parameters + ") {\n  return " + accessor.name + "(" +
         indexes + arguments + ");\n}\n";
}

std::string row(const model::Parameter &parameter) {
  return "  {\"" + std::string(parameter.path) + "\", \"" + std::string(model::name(parameter.type)) +
         "\", " + (parameter.writable() ? "1" : "0") + ", " + symbol(parameter.get) + ", " +
         symbol(parameter.set) + ", " + symbol(parameter.check) + "},\n";
}

std::string row(const model::RowList &list) {
  return "  {\"" + std::string(list.object()) + "\", \"" + std::string(list.member()) + "\", " +
         symbol(list.get) + ", " + symbol(list.add) + ", " + symbol(list.set) + ", " + symbol(list.remove) +
         "},\n";
}

std::string array(const std::string &name, const std::string &rows) {
  return "\nconst struct " + name + " " + name + "s[] = {\n" + rows + "};\nconst unsigned " + name +
         "_count = sizeof " + name + "s / sizeof " + name + "s[0];\n";
}

} // namespace

std::string accessor_table() {
  std::string wrappers, parameters, lists;
  for (const model::Parameter *parameter : model::parameters()) {
    wrappers += wrapper(parameter->get, "char *buf, unsigned int buflen", "buf, buflen") +
                wrapper(parameter->set, "const char *value", "value");
    parameters += row(*parameter);
  }
  for (const model::RowList &list : model::lists())
    lists += row(list);
  return types + wrappers + array("kova_parameter", parameters) + array("kova_list", lists);
}

} // namespace kova::ctl
