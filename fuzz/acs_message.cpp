// What an ACS may send: it is a message, whose answer can be read again, or it is refused; nothing of it passes for
// a request that it has not signed.
#include "agent/methods.hpp"
#include "agent/stun_message.hpp"
#include "agent/trace.hpp"
#include "fuzz/input.hpp"

using namespace kova;

namespace {

// As the methods do, whatever the call is.
void read_arguments(const pugi::xml_node &call) {
  const auto refused = [](auto read) {
    try {
      read();
    } catch (const agent::RpcFault &fault) {
      fuzz::require(fault.code == request::FaultCode::InvalidArguments);
    }
  };
  refused([&] { agent::array_argument(call, "ParameterNames", "string"); });
  refused([&] {
    for (const auto &element : agent::array_argument(call, "ParameterList", "ParameterValueStruct"))
      agent::text_argument(element, "Name", agent::longest_name);
  });
  refused([&] { agent::boolean_argument(call, "NextLevel"); });
  refused([&] { agent::number_argument(call, "DelaySeconds"); });
}

void read_again(const agent::Message &message) {
  agent::Outgoing answer(agent::cwmp_1_2, message.id);
  answer.fault({request::FaultCode::MethodNotSupported, message.name, {}});
  const agent::Message again = agent::read_message(answer.text());
  fuzz::require(again.name == "Fault" && again.defect.empty());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  const std::string text(reinterpret_cast<const char *>(data), size);
  try {
    const agent::Message message = agent::read_message(text);
    agent::Trace::masked(message.document);
    read_arguments(message.content);
    read_again(message);
  } catch (const agent::ProtocolError &) {
  }
  const agent::stun::TransactionId id{};
  agent::stun::decode(text, id);
  agent::stun::decode(std::string("\1\1\0", 3) + static_cast<char>(size) + std::string(16, '\0') + text, id);
  fuzz::require(!agent::signed_request(text, "acs", "secret"));
  return 0;
}
