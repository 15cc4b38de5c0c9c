// What the two documents of the Broadband Forum have in common.
#include "kovactl/model_xml.hpp"

#include "request/allowed.hpp"
#include "request/configuration.hpp"

#include <algorithm>
#include <sstream>

namespace kova::ctl::xml {
namespace {

using request::allowed_values;
using request::AllowedValues;

// Types that the data model defines by name, rather than builds in.
constexpr model::Type named_types[] = {model::Type::IPAddress, model::Type::MACAddress};

bool is_number(model::Type type) {
  return type == model::Type::Int || type == model::Type::UnsignedInt;
}

template <typename Bound>
void add_bounds(pugi::xml_node type, const char *facet, const std::string &what, const Bound &least,
                const Bound &most) {
  const pugi::xml_node node = add_element(type, facet);
  set_attribute(node, ("min" + what).c_str(), std::to_string(least));
  set_attribute(node, ("max" + what).c_str(), std::to_string(most));
}

// A number has no enumeration: each word is a range of its own.
void add_number_facets(pugi::xml_node node, const AllowedValues &allowed) {
  if (allowed.range)
    return add_bounds(node, "range", "Inclusive", allowed.range->first, allowed.range->second);
  for (const auto &[word, meaning] : allowed.words)
    add_bounds(node, "range", "Inclusive", std::stol(word), std::stol(word));
}

void add_text_facets(pugi::xml_node node, const AllowedValues &allowed, const char *note) {
  if (allowed.range) return; // the words mean numbers
  if (allowed.length) add_bounds(node, "size", "Length", allowed.length->first, allowed.length->second);
  for (const auto &[word, meaning] : allowed.words) {
    const pugi::xml_node value = add_element(node, "enumeration");
    set_attribute(value, "value", word);
    if (!meaning.empty()) add_element(value, note).text() = meaning.c_str();
  }
  if (allowed.words.empty() && !allowed.pattern.empty())
    set_attribute(add_element(node, "pattern"), "value", allowed.pattern);
}

} // namespace

std::string as_text(const pugi::xml_document &document) {
  std::ostringstream text;
  document.save(text, "  ");
  return text.str();
}

pugi::xml_node add_element(pugi::xml_node parent, const char *name) {
  return parent.append_child(name);
}

void set_attribute(pugi::xml_node node, const char *name, const std::string &value) {
  node.append_attribute(name) = value.c_str();
}

pugi::xml_node add_document(pugi::xml_document &file, const std::string &prefix, const std::string &schema) {
  const pugi::xml_node declaration = file.append_child(pugi::node_declaration);
  set_attribute(declaration, "version", "1.0");
  set_attribute(declaration, "encoding", "UTF-8");
  const pugi::xml_node document = add_element(file, (prefix + ":document").c_str());
  const std::string name_space = "urn:broadband-forum-org:cwmp:" + schema;
  set_attribute(document, ("xmlns:" + prefix).c_str(), name_space);
  set_attribute(document, "xmlns:xsi", "http://www.w3.org/2001/XMLSchema-instance");
  set_attribute(document, "xsi:schemaLocation",
                name_space + " https://www.broadband-forum.org/cwmp/cwmp-" + schema + ".xsd");
  return document;
}

void add_imports(pugi::xml_node document, const char *file, const char *spec, const char *model) {
  const auto import = [document](const char *of_file, const char *of_spec) {
    const pugi::xml_node node = add_element(document, "import");
    set_attribute(node, "file", of_file);
    set_attribute(node, "spec", of_spec);
    return node;
  };
  const auto types = import("tr-106-1-0-types.xml", "urn:broadband-forum-org:tr-106-1-0");
  for (const model::Type type : named_types)
    set_attribute(add_element(types, "dataType"), "name", std::string(name(type)));
  set_attribute(add_element(import(file, spec), "model"), "name", model);
}

void add_parameter(pugi::xml_node object, const ModelParameter &what, const Dialect &dialect) {
  const pugi::xml_node parameter = add_element(object, "parameter");
  set_attribute(parameter, dialect.name, std::string(what.name));
  set_attribute(parameter, "access", std::string(name(what.access)));
  const AllowedValues allowed = what.parameter ? allowed_values(*what.parameter) : AllowedValues();
  add_element(parameter, dialect.note).text() =
      (what.meaning + (what.unit.empty() ? "" : ". Unit: " + std::string(what.unit)) +
       (allowed.text.empty() ? "" : ". Takes " + allowed.text))
          .c_str();
  const pugi::xml_node syntax = add_element(parameter, "syntax");
  if (dialect.has_commands && what.parameter && request::acts(std::string(what.parameter->path)))
    set_attribute(syntax, "command", "true");
  if (what.type == model::Type::List) add_element(syntax, "list");
  if (std::ranges::find(named_types, what.type) != std::end(named_types))
    return set_attribute(add_element(syntax, "dataType"), "ref", std::string(name(what.type)));
  const auto type = what.type == model::Type::List ? model::Type::String : what.type; // that of an item
  const pugi::xml_node node = add_element(syntax, std::string(name(type)).c_str());
  if (is_number(type)) {
    add_number_facets(node, allowed);
    if (dialect.has_units && !what.unit.empty())
      set_attribute(add_element(node, "units"), "value", std::string(what.unit));
  } else if (name(type) == name(model::Type::String))
    add_text_facets(node, allowed, dialect.note);
}

} // namespace kova::ctl::xml
