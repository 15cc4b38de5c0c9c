// What the two documents of the Broadband Forum have in common: a data model (DM) defines parameters and objects, a
// device type (DT) refers to them.
#pragma once

#include "kovactl/model_objects.hpp"

#include <pugixml.hpp>

#include <string>

namespace kova::ctl::xml {

inline constexpr const char *root_model = "InternetGatewayDevice:1.14";
// Ours: what the device has beyond the root data model.
inline constexpr const char *own_model = "X_KOVA_InternetGatewayDevice:1.0";
inline constexpr const char *own_file = "kova-datamodel.xml";
inline constexpr const char *own_spec = "urn:kova:data-model:lte-router";

// How the two say the same.
struct Dialect {
  const char *name; // the attribute that names a parameter
  const char *note; // the element that holds a text for a person
  bool has_units, has_commands;
};

std::string as_text(const pugi::xml_document &document);
pugi::xml_node add_element(pugi::xml_node parent, const char *name);
void set_attribute(pugi::xml_node node, const char *name, const std::string &value);

// The root element of a new document of this schema ("devicetype-1-5").
pugi::xml_node add_document(pugi::xml_document &file, const std::string &prefix, const std::string &schema);
// The named types, and the model of another document.
void add_imports(pugi::xml_node document, const char *file, const char *spec, const char *model);
// Name, access, meaning and syntax, with the allowed values.
void add_parameter(pugi::xml_node object, const ModelParameter &what, const Dialect &dialect);

} // namespace kova::ctl::xml
