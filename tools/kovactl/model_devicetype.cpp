#include "kovactl/model_documents.hpp"
#include "kovactl/model_xml.hpp"

#include <nettle/sha1.h>

#include <array>
#include <cstdio>

namespace kova::ctl {
namespace {

using namespace xml;

constexpr const char *nil_uuid = "00000000-0000-0000-0000-000000000000";
constexpr Dialect device_type = {"ref", "annotation", /*has_units=*/false, /*has_commands=*/false};

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

void add_object(pugi::xml_node parent, const ModelObject &object) {
  const pugi::xml_node node = add_element(parent, "object");
  const std::string entries = std::to_string(object.entries());
  set_attribute(node, "ref", object.path);
  set_attribute(node, "access", object.rows_writable ? "createDelete" : "readOnly");
  set_attribute(node, "minEntries", object.is_list ? "0" : entries);
  set_attribute(node, "maxEntries", object.is_list ? "unbounded" : entries);
  for (const ModelParameter &parameter : object.parameters)
    add_parameter(node, parameter, device_type);
}

} // namespace

std::string device_type_document() {
  pugi::xml_document file;
  const pugi::xml_node document = add_document(file, "dt", "devicetype-1-5");
  set_attribute(document, "deviceType", "urn:kova:device-type:lte-router");
  set_attribute(document, "uuid", nil_uuid);
  add_element(document, "annotation").text() =
      "The supported data model of the LTE router. VoiceService:1.1 is below Services.VoiceService.{i}.";
  add_imports(document, own_file, own_spec, own_model);
  const pugi::xml_node model = add_element(document, "model");
  set_attribute(model, "ref", own_model);
  for (const ModelObject &object : model_objects())
    add_object(model, object);
  // The same model has the same UUID, which is that of the document without one.
  document.attribute("uuid") = uuid_of(as_text(file)).c_str();
  return as_text(file);
}

} // namespace kova::ctl
