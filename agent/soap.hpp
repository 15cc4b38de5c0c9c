// SOAP envelopes as CWMP has them: those that come are judged, those that go are built.
#pragma once

#include "request/fault.hpp"

#include <pugixml.hpp>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace kova::agent {

// What came is no CWMP message: there is nobody to answer, and the session cannot go on.
struct ProtocolError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// A request that is refused: becomes the Fault that the ACS receives.
struct RpcFault {
  request::FaultCode code;
  std::string detail;                       // "" for the standard's own words
  std::vector<request::Fault> parameters{}; // of SetParameterValues
};

inline RpcFault invalid_arguments(const std::string &detail) {
  return {request::FaultCode::InvalidArguments, detail};
}

// The namespace of CWMP 1.2, which a device of that version begins with.
constexpr std::string_view cwmp_1_2 = "urn:dslforum-org:cwmp-1-2";

struct Message {
  pugi::xml_document document;
  std::string id; // "" when there is none
  bool hold_requests = false;
  std::string name;           // of what the body carries, without its prefix; "" for an empty body
  std::string cwmp_namespace; // that of the body; "" when it is none of CWMP
  pugi::xml_node content;
  std::string defect; // why it cannot be served though it is an envelope; "" when it can
};

// Throws ProtocolError.
Message read_message(std::string_view text);
std::string_view local_name(const pugi::xml_node &node);

// Arguments of a request. They throw RpcFault 9003 when the argument is missing, doubled or of another form.
pugi::xml_node argument(const pugi::xml_node &call, const char *name);
std::string text_argument(const pugi::xml_node &call, const char *name, std::size_t longest);
bool boolean_argument(const pugi::xml_node &call, const char *name);
std::uint32_t number_argument(const pugi::xml_node &call, const char *name);
// The elements of an array, whose arrayType must count them rightly.
std::vector<pugi::xml_node> array_argument(const pugi::xml_node &call, const char *name, const char *element);

// An envelope on its way out.
class Outgoing {
public:
  // The id goes into the header unless it is "".
  Outgoing(std::string_view cwmp_namespace, const std::string &id);
  // Adds the body's element, whose name gets the prefix of CWMP.
  pugi::xml_node call(const std::string &name);
  void fault(const RpcFault &fault);
  const pugi::xml_document &document() const { return document_; }
  std::string text() const;

private:
  pugi::xml_document document_;
  pugi::xml_node body_;
};

// A child with a text, in which what XML cannot carry is replaced.
pugi::xml_node add(pugi::xml_node parent, const char *name, const std::string &text);
// An array whose elements are added by the function, and counted.
template <typename AddElements>
void add_array(pugi::xml_node parent, const char *name, const char *type, AddElements add_elements) {
  pugi::xml_node array = parent.append_child(name);
  pugi::xml_attribute array_type = array.append_attribute("soap-enc:arrayType");
  add_elements(array);
  const auto elements = array.children();
  const auto count = std::distance(elements.begin(), elements.end());
  array_type.set_value((std::string(type) + "[" + std::to_string(count) + "]").c_str());
}

} // namespace kova::agent
