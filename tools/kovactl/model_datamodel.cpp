#include "kovactl/model_documents.hpp"
#include "kovactl/model_xml.hpp"

#include <algorithm>

namespace kova::ctl {
namespace {

using namespace xml;

constexpr Dialect data_model = {"name", "description", /*has_units=*/true, /*has_commands=*/true};

// Beyond the root data model: vendor extensions, and services, which models of their own define.
bool is_own(std::string_view path) {
  constexpr std::string_view services = "InternetGatewayDevice.Services.";
  return path.find("X_KOVA_") != path.npos || (path.starts_with(services) && path.size() > services.size());
}

// Objects of the root data model that are extended, and to which the standard lets a server add instances, which
// this device does not.
constexpr std::string_view writable_there[] = {
    "InternetGatewayDevice.WANDevice.{i}.WANConnectionDevice.{i}.WANIPConnection.{i}."};

bool is_writable(const ModelObject &object) {
  return object.rows_writable || std::ranges::find(writable_there, object.path) != std::end(writable_there);
}

// The parameter that counts the rows: of the parent, with a name that follows from the table's.
std::string counter_of(const ModelObject &object, const std::vector<ModelObject> &objects) {
  const std::string table = object.path.substr(0, object.path.size() - std::string_view(".{i}.").size());
  const std::string name = table.substr(table.rfind('.') + 1) + "NumberOfEntries";
  const auto parent = std::ranges::find(objects, table.substr(0, table.rfind('.') + 1), &ModelObject::path);
  const bool counted =
      parent != objects.end() &&
      std::ranges::find(parent->parameters, name, &ModelParameter::name) != parent->parameters.end();
  return counted ? name : "";
}

// A table of one instance is told apart from an object that is none by its bounds.
void set_entries(pugi::xml_node node, const ModelObject &object, const std::vector<ModelObject> &objects) {
  const bool is_table = object.path.ends_with("{i}."), varies = is_table && object.entries() == 1;
  set_attribute(node, "minEntries", varies ? "0" : std::to_string(object.entries()));
  set_attribute(node, "maxEntries", varies ? "unbounded" : std::to_string(object.entries()));
  if (const std::string counter = varies ? counter_of(object, objects) : ""; !counter.empty())
    set_attribute(node, "numEntriesParameter", counter);
}

void add_object(pugi::xml_node model, const ModelObject &object, const std::vector<ModelObject> &objects) {
  const auto is_new = [&](const ModelParameter &parameter) {
    return is_own(object.path + std::string(parameter.name));
  };
  if (!is_own(object.path) && std::ranges::none_of(object.parameters, is_new)) return;
  const pugi::xml_node node = add_element(model, "object");
  set_attribute(node, is_own(object.path) ? "name" : "base", object.path);
  set_attribute(node, "access", is_writable(object) ? "readWrite" : "readOnly");
  set_entries(node, object, objects);
  for (const ModelParameter &parameter : object.parameters)
    if (is_new(parameter)) add_parameter(node, parameter, data_model);
}

} // namespace

std::string data_model_document() {
  pugi::xml_document file;
  const pugi::xml_node document = add_document(file, "dm", "datamodel-1-8");
  set_attribute(document, "spec", own_spec);
  set_attribute(document, "file", own_file);
  add_element(document, "description").text() =
      "What the LTE router has beyond the root data model: its own objects and parameters, and those of "
      "VoiceService:1.1 that it supports, below Services.VoiceService.{i}.";
  add_imports(document, "tr-098-1-8.xml", "urn:broadband-forum-org:tr-098-1-8", root_model);
  const pugi::xml_node model = add_element(document, "model");
  set_attribute(model, "name", own_model);
  set_attribute(model, "base", root_model);
  const std::vector<ModelObject> objects = model_objects();
  for (const ModelObject &object : objects)
    add_object(model, object, objects);
  return as_text(file);
}

} // namespace kova::ctl
