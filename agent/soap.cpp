#include "agent/soap.hpp"

#include "agent/values.hpp"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <iterator>
#include <optional>
#include <sstream>

namespace kova::agent {
namespace {

constexpr std::string_view envelope_namespace = "http://schemas.xmlsoap.org/soap/envelope/";
constexpr std::string_view cwmp_namespaces = "urn:dslforum-org:cwmp-1-"; // and the minor version
constexpr std::string_view blanks = " \t\r\n";

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(blanks);
  return first == std::string_view::npos ? "" : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// The parser does not know of namespaces: a prefix is looked up among the ancestors.
std::string_view namespace_of(const pugi::xml_node &node) {
  const std::string_view name = node.name();
  const std::size_t colon = name.find(':');
  const std::string declaration =
      colon == std::string_view::npos ? "xmlns" : "xmlns:" + std::string(name.substr(0, colon));
  for (pugi::xml_node at = node; at; at = at.parent())
    if (const pugi::xml_attribute found = at.attribute(declaration.c_str())) return found.value();
  return "";
}

bool is_cwmp(std::string_view name) {
  return name.starts_with(cwmp_namespaces) && name.size() == cwmp_namespaces.size() + 1;
}

std::vector<pugi::xml_node> elements_of(const pugi::xml_node &parent) {
  std::vector<pugi::xml_node> found;
  for (const pugi::xml_node &child : parent.children())
    if (child.type() == pugi::node_element) found.push_back(child);
  return found;
}

std::optional<bool> as_boolean(std::string_view text) {
  if (text == "1" || text == "true") return true;
  if (text == "0" || text == "false") return false;
  return std::nullopt;
}

void read_header(Message &message, const pugi::xml_node &header) {
  bool has_id = false;
  for (const pugi::xml_node &field : elements_of(header)) {
    const bool ours = is_cwmp(namespace_of(field));
    if (ours && local_name(field) == "ID") {
      if (has_id) message.defect = "the header has two IDs";
      has_id = true;
      message.id = field.text().get();
    } else if (ours && local_name(field) == "HoldRequests")
      message.hold_requests = as_boolean(trimmed(field.text().get())).value_or(false);
    else if (!ours || local_name(field) != "NoMoreRequests")
      for (const pugi::xml_attribute &attribute : field.attributes())
        if (std::string_view(attribute.name()).ends_with(":mustUnderstand") && attribute.as_bool())
          message.defect =
              "the header has a " + std::string(local_name(field)) + ", which must be understood";
  }
}

} // namespace

std::string_view local_name(const pugi::xml_node &node) {
  const std::string_view name = node.name();
  return name.substr(name.find(':') + 1);
}

Message read_message(std::string_view text) {
  Message message;
  const auto parsed = message.document.load_buffer(
      text.data(), text.size(), pugi::parse_default | pugi::parse_doctype | pugi::parse_ws_pcdata_single);
  if (!parsed) throw ProtocolError(std::string("the answer is no XML: ") + parsed.description());
  for (const pugi::xml_node &node : message.document.children())
    if (node.type() == pugi::node_doctype) throw ProtocolError("the answer declares a document type");
  const pugi::xml_node envelope = message.document.document_element();
  if (local_name(envelope) != "Envelope" || namespace_of(envelope) != envelope_namespace)
    throw ProtocolError("the answer is no SOAP 1.1 envelope");
  pugi::xml_node body;
  for (const pugi::xml_node &part : elements_of(envelope)) {
    if (namespace_of(part) != envelope_namespace) continue;
    if (local_name(part) == "Header") read_header(message, part);
    if (local_name(part) == "Body") {
      if (body) throw ProtocolError("the envelope has two bodies");
      body = part;
    }
  }
  if (!body) throw ProtocolError("the envelope has no body");
  const std::vector<pugi::xml_node> contents = elements_of(body);
  if (contents.size() > 1) message.defect = "the body has more than one element";
  if (contents.empty()) return message;
  message.content = contents.front();
  message.name = local_name(message.content);
  if (const std::string_view name = namespace_of(message.content); is_cwmp(name))
    message.cwmp_namespace = name;
  else if (name != envelope_namespace || message.name != "Fault")
    message.name = "{" + std::string(name) + "}" + message.name; // a method that nobody has
  return message;
}

pugi::xml_node argument(const pugi::xml_node &call, const char *name) {
  pugi::xml_node found;
  for (const pugi::xml_node &child : elements_of(call)) {
    if (local_name(child) != name) continue;
    if (found) throw invalid_arguments("there are two " + std::string(name));
    found = child;
  }
  if (!found) throw invalid_arguments("there is no " + std::string(name));
  return found;
}

std::string text_argument(const pugi::xml_node &call, const char *name, std::size_t longest) {
  std::string text = argument(call, name).text().get();
  if (text.size() > longest)
    throw invalid_arguments(std::string(name) + " has more than " + std::to_string(longest) + " characters");
  return text;
}

bool boolean_argument(const pugi::xml_node &call, const char *name) {
  const auto value = as_boolean(trimmed(argument(call, name).text().get()));
  if (!value) throw invalid_arguments(std::string(name) + " is no boolean");
  return *value;
}

std::uint32_t number_argument(const pugi::xml_node &call, const char *name) {
  const pugi::xml_node node = argument(call, name);
  const std::string_view text = trimmed(node.text().get());
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size())
    throw invalid_arguments(std::string(name) + " is no unsignedInt");
  return number;
}

std::vector<pugi::xml_node> array_argument(const pugi::xml_node &call, const char *name,
                                           const char *element) {
  const pugi::xml_node array = argument(call, name);
  std::vector<pugi::xml_node> found = elements_of(array);
  for (const pugi::xml_node &each : found)
    if (local_name(each) != element)
      throw invalid_arguments(std::string(name) + " has an element that is no " + element);
  for (const pugi::xml_attribute &attribute : array.attributes()) {
    if (!std::string_view(attribute.name()).ends_with(":arrayType")) continue;
    const std::string_view type = attribute.value();
    const std::size_t open = type.rfind('[');
    if (open == std::string_view::npos ||
        trimmed(type.substr(open)) != "[" + std::to_string(found.size()) + "]")
      throw invalid_arguments(std::string(name) + " has " + std::to_string(found.size()) +
                              " elements and not as many as its arrayType says");
  }
  return found;
}

Outgoing::Outgoing(std::string_view cwmp_namespace, const std::string &id) {
  pugi::xml_node envelope = document_.append_child("soap-env:Envelope");
  const std::pair<const char *, std::string> spaces[] = {
      {"xmlns:soap-env", std::string(envelope_namespace)},
      {"xmlns:soap-enc", "http://schemas.xmlsoap.org/soap/encoding/"},
      {"xmlns:xsd", "http://www.w3.org/2001/XMLSchema"},
      {"xmlns:xsi", "http://www.w3.org/2001/XMLSchema-instance"},
      {"xmlns:cwmp", std::string(cwmp_namespace)}};
  for (const auto &[name, value] : spaces)
    envelope.append_attribute(name) = value.c_str();
  if (!id.empty()) {
    pugi::xml_node header = add(envelope.append_child("soap-env:Header"), "cwmp:ID", id);
    header.append_attribute("soap-env:mustUnderstand") = "1";
  }
  body_ = envelope.append_child("soap-env:Body");
}

pugi::xml_node Outgoing::call(const std::string &name) {
  return body_.append_child(("cwmp:" + name).c_str());
}

void Outgoing::fault(const RpcFault &fault) {
  const auto code_text = [](request::FaultCode code) { return std::to_string(static_cast<int>(code)); };
  const auto in_words = [](request::FaultCode code, const std::string &detail) {
    return std::string(request::text(code)) + (detail.empty() ? "" : ": " + detail);
  };
  const bool ours = fault.code == request::FaultCode::RequestDenied ||
                    fault.code == request::FaultCode::InternalError ||
                    fault.code == request::FaultCode::ResourcesExceeded;
  pugi::xml_node soap_fault = body_.append_child("soap-env:Fault");
  add(soap_fault, "faultcode", ours ? "Server" : "Client");
  add(soap_fault, "faultstring", "CWMP fault");
  pugi::xml_node cwmp_fault = soap_fault.append_child("detail").append_child("cwmp:Fault");
  add(cwmp_fault, "FaultCode", code_text(fault.code));
  add(cwmp_fault, "FaultString", in_words(fault.code, fault.detail));
  for (const request::Fault &each : fault.parameters) {
    pugi::xml_node one = cwmp_fault.append_child("SetParameterValuesFault");
    add(one, "ParameterName", each.path);
    add(one, "FaultCode", code_text(each.code));
    add(one, "FaultString", in_words(each.code, each.detail));
  }
}

std::string Outgoing::text() const {
  std::ostringstream text;
  document_.save(text, "", pugi::format_raw);
  return std::move(text).str();
}

pugi::xml_node add(pugi::xml_node parent, const char *name, const std::string &text) {
  pugi::xml_node child = parent.append_child(name);
  child.text().set(xml_text(text).c_str());
  return child;
}

} // namespace kova::agent
