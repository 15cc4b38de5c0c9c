// File transfers: they are queued, and begin when the session is over.
#include "agent/methods.hpp"
#include "agent/transfers.hpp"
#include "agent/values.hpp"

#include <algorithm>

namespace kova::agent {
namespace {

void check_url(const std::string &url) {
  const std::size_t colon = url.find("://");
  std::string scheme = url.substr(0, colon);
  std::ranges::transform(scheme, scheme.begin(), [](unsigned char c) { return std::tolower(c); });
  if (colon == std::string::npos) throw invalid_arguments("URL is none");
  if (scheme != "http" && scheme != "https" && scheme != "ftp")
    throw RpcFault{request::FaultCode::UnsupportedTransferProtocol, scheme};
  const std::string authority = url.substr(colon + 3, url.find('/', colon + 3) - colon - 3);
  if (authority.find('@') != std::string::npos)
    throw invalid_arguments("URL must not have a user; Username and Password have it");
}

Transfer requested_transfer(const pugi::xml_node &call, std::initializer_list<std::string_view> types) {
  Transfer transfer;
  transfer.command_key = text_argument(call, "CommandKey", longest_key);
  transfer.file_type = text_argument(call, "FileType", 64);
  transfer.url = text_argument(call, "URL", 256);
  transfer.username = text_argument(call, "Username", 256);
  transfer.password = text_argument(call, "Password", 256);
  transfer.due = std::time(nullptr) + number_argument(call, "DelaySeconds");
  if (std::ranges::find(types, transfer.file_type) == types.end())
    throw invalid_arguments("there is no file of the type \"" + transfer.file_type + "\"");
  check_url(transfer.url);
  return transfer;
}

void answer_queued(Store &store, const Transfer &transfer, pugi::xml_node answer) {
  store.change([&transfer](Transaction &change) { queue(change, transfer); });
  add(answer, "Status", "1"); // not yet done
  add(answer, "StartTime", unknown_time);
  add(answer, "CompleteTime", unknown_time);
}

} // namespace

void download(Store &store, const pugi::xml_node &call, pugi::xml_node answer) {
  Transfer transfer = requested_transfer(call, {file_type::firmware, file_type::configuration});
  transfer.file_size = number_argument(call, "FileSize");
  transfer.target_file = text_argument(call, "TargetFileName", 256);
  text_argument(call, "SuccessURL", 256);
  text_argument(call, "FailureURL", 256);
  answer_queued(store, transfer, answer);
}

void upload(Store &store, const pugi::xml_node &call, pugi::xml_node answer) {
  Transfer transfer = requested_transfer(call, {file_type::uploaded_configuration, file_type::log});
  transfer.is_upload = true;
  answer_queued(store, transfer, answer);
}

void get_queued_transfers(Store &store, const pugi::xml_node &, pugi::xml_node answer) {
  add_array(answer, "TransferList", "cwmp:QueuedTransferStruct", [&store](pugi::xml_node list) {
    for (const Transfer &transfer : store.read(transfers)) {
      pugi::xml_node one = list.append_child("QueuedTransferStruct");
      add(one, "CommandKey", transfer.command_key);
      const int state = std::min(static_cast<int>(transfer.state), static_cast<int>(TransferState::finished));
      add(one, "State", std::to_string(state));
    }
  });
}

} // namespace kova::agent
