#include "kovactl/model_documents.hpp"
#include "kovactl/model_objects.hpp"
#include "request/allowed.hpp"

#include <nettle/sha1.h>
#include <pugixml.hpp>

#include <array>
#include <cstdio>
#include <sstream>
#include <stdexcept>

namespace kova::ctl {
namespace {

using request::allowed_values;
using request::AllowedValues;

constexpr const char *root_model = "InternetGatewayDevice:1.14";
constexpr const char *schema = "urn:broadband-forum-org:cwmp:devicetype-1-5";
constexpr const char *schema_location = "urn:broadband-forum-org:cwmp:devicetype-1-5 "
                                        "https://www.broadband-forum.org/cwmp/cwmp-devicetype-1-5.xsd";
constexpr const char *nil_uuid = "00000000-0000-0000-0000-000000000000";

std::string as_text(const pugi::xml_document &document) {
  std::ostringstream text;
  document.save(text, "  ");
  return text.str();
}

// Version 5, within the name space of URLs.
std::string uuid_of(const std::string &name) {
  static constexpr unsigned char name_space[] = {0x6b, 0xa7, 0xb8, 0x11, 0x9d, 0xad, 0x11, 0xd1,
                                                 0x80, 0xb4, 0x00, 0xc0, 0x4f, 0xd4, 0x30, 0xc8};
  const std::string input = std::string(std::begin(name_space), std::end(name_space)) + name;
  std::array<unsigned char, SHA1_DIGEST_SIZE> digest{};
  sha1_ctx hash;
  sha1_init(&hash);
  sha1_update(&hash, input.size(), reinterpret_cast<const unsigned char *>(input.data()));
  sha1_digest(&hash, digest.size(), digest.data());
  digest[6] = static_cast<unsigned char>((digest[6] & 0x0f) | 0x50);
  digest[8] = static_cast<unsigned char>((digest[8] & 0x3f) | 0x80);
  std::string uuid;
  for (size_t i = 0; i < 16; ++i) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02x", digest[i]);
    uuid.append(i == 4 || i == 6 || i == 8 || i == 10 ? "-" : "").append(digits);
  }
  return uuid;
}

pugi::xml_node add(pugi::xml_node parent, const char *name) {
  return parent.append_child(name);
}

void set(pugi::xml_node node, const char *name, const std::string &value) {
  node.append_attribute(name) = value.c_str();
}

void annotate(pugi::xml_node node, const std::string &text) {
  add(node, "annotation").text() = text.c_str();
}

// Types that the data model defines by name, rather than builds in.
bool is_named(model::Type type) {
  return type == model::Type::IPAddress || type == model::Type::MACAddress;
}

pugi::xml_node add_import(pugi::xml_node document, const char *file, const char *spec) {
  const pugi::xml_node import = add(document, "import");
  set(import, "file", file);
  set(import, "spec", spec);
  return import;
}

void add_imports(pugi::xml_node document) {
  const auto types = add_import(document, "tr-106-1-0-types.xml", "urn:broadband-forum-org:tr-106-1-0");
  for (const model::Type type : {model::Type::IPAddress, model::Type::MACAddress})
    set(add(types, "dataType"), "name", std::string(name(type)));
  const auto root = add_import(document, "tr-098-1-8.xml", "urn:broadband-forum-org:tr-098-1-8");
  set(add(root, "model"), "name", root_model);
}

template <typename Bounds>
void add_bounds(pugi::xml_node type, const char *facet, const char *least, const char *most,
                const Bounds &bounds) {
  const pugi::xml_node node = add(type, facet);
  set(node, least, std::to_string(bounds.first));
  set(node, most, std::to_string(bounds.second));
}

// What of the allowed values the type has facets for; the words of a number stand in its annotation.
void add_facets(pugi::xml_node node, model::Type type, const AllowedValues &allowed) {
  if ((type == model::Type::Int || type == model::Type::UnsignedInt) && allowed.range)
    add_bounds(node, "range", "minInclusive", "maxInclusive", *allowed.range);
  if (type != model::Type::String) return;
  if (allowed.length) add_bounds(node, "size", "minLength", "maxLength", *allowed.length);
  for (const auto &[word, meaning] : allowed.words) {
    const pugi::xml_node value = add(node, "enumeration");
    set(value, "value", word);
    if (!meaning.empty()) annotate(value, meaning);
  }
  if (allowed.words.empty() && !allowed.pattern.empty()) set(add(node, "pattern"), "value", allowed.pattern);
}

void add_syntax(pugi::xml_node parameter, model::Type type, const AllowedValues &allowed) {
  const pugi::xml_node syntax = add(parameter, "syntax");
  if (type == model::Type::List) {
    add(syntax, "list");
    add(syntax, "string"); // what its items are
  } else if (is_named(type))
    set(add(syntax, "dataType"), "ref", std::string(name(type)));
  else
    add_facets(add(syntax, std::string(name(type)).c_str()), type, allowed);
}

void add_parameter(pugi::xml_node parent, const ModelParameter &parameter) {
  const pugi::xml_node node = add(parent, "parameter");
  set(node, "ref", std::string(parameter.name));
  set(node, "access", std::string(name(parameter.access)));
  const AllowedValues allowed = parameter.parameter ? allowed_values(*parameter.parameter) : AllowedValues();
  annotate(node, parameter.meaning +
                     (parameter.unit.empty() ? "" : ". Unit: " + std::string(parameter.unit)) +
                     (allowed.text.empty() ? "" : ". Takes " + allowed.text));
  add_syntax(node, parameter.type, allowed);
}

void add_object(pugi::xml_node parent, const ModelObject &object) {
  const pugi::xml_node node = add(parent, "object");
  const std::string entries = std::to_string(object.entries());
  set(node, "ref", object.path);
  set(node, "access", object.rows_writable ? "createDelete" : "readOnly");
  set(node, "minEntries", object.is_list ? "0" : entries);
  set(node, "maxEntries", object.is_list ? "unbounded" : entries);
  for (const ModelParameter &parameter : object.parameters)
    add_parameter(node, parameter);
}

} // namespace

std::string device_type_document() {
  pugi::xml_document file;
  const pugi::xml_node declaration = file.append_child(pugi::node_declaration);
  set(declaration, "version", "1.0");
  set(declaration, "encoding", "UTF-8");
  const pugi::xml_node document = add(file, "dt:document");
  set(document, "xmlns:dt", schema);
  set(document, "xmlns:xsi", "http://www.w3.org/2001/XMLSchema-instance");
  set(document, "xsi:schemaLocation", schema_location);
  set(document, "deviceType", "urn:kova:device-type:lte-router");
  set(document, "uuid", nil_uuid);
  annotate(
      document,
      "The supported data model of the LTE router. VoiceService:1.1 is below Services.VoiceService.{i}.");
  add_imports(document);
  const pugi::xml_node model = add(document, "model");
  set(model, "ref", root_model);
  for (const ModelObject &object : model_objects())
    add_object(model, object);
  // The same model has the same UUID, which is that of the document without one.
  document.attribute("uuid") = uuid_of(as_text(file)).c_str();
  return as_text(file);
}

} // namespace kova::ctl
