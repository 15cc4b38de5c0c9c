#include "agent/transfers.hpp"

#include "agent/events.hpp"
#include "agent/names.hpp"
#include "agent/soap.hpp"
#include "agent/values.hpp"
#include "platform/host/nvram_admin.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace kova::agent {
namespace {

using Json = nlohmann::json;

Json as_json(const Transfer &transfer) {
  return {{"upload", transfer.is_upload},
          {"key", transfer.command_key},
          {"type", transfer.file_type},
          {"url", transfer.url},
          {"user", transfer.username},
          {"password", transfer.password},
          {"target", transfer.target_file},
          {"size", transfer.file_size},
          {"due", transfer.due},
          {"start", transfer.start},
          {"complete", transfer.complete},
          {"state", static_cast<int>(transfer.state)},
          {"fault", transfer.fault_code},
          {"text", transfer.fault_text}};
}

Transfer from_json(const std::string &record, const Json &json) {
  return {record,
          json.at("upload"),
          json.at("key"),
          json.at("type"),
          json.at("url"),
          json.at("user"),
          json.at("password"),
          json.at("target"),
          json.at("size"),
          json.at("due"),
          json.at("start"),
          json.at("complete"),
          static_cast<TransferState>(json.at("state").get<int>()),
          json.at("fault"),
          json.at("text")};
}

} // namespace

void put(Transaction &change, const Transfer &transfer) {
  // Bytes that are no UTF-8 came from no XML.
  change.put(transfer.record, as_json(transfer).dump(-1, ' ', false, Json::error_handler_t::replace));
}

void queue(Transaction &change, Transfer transfer) {
  constexpr std::size_t most = 10; // an answer to GetQueuedTransfers may carry 16
  if (transfers(change).size() >= most)
    throw RpcFault{request::FaultCode::ResourcesExceeded, "too many transfers wait"};
  transfer.record = stored::transfer + change.serial();
  put(change, transfer);
}

std::vector<Transfer> transfers(const Transaction &store) {
  std::vector<Transfer> found;
  for (const auto &[record, text] : store.entries(stored::transfer))
    found.push_back(from_json(record, Json::parse(text)));
  return found;
}

void finish(Transaction &change, Transfer transfer, const std::optional<request::Fault> &fault) {
  transfer.state = TransferState::finished;
  transfer.complete = std::time(nullptr);
  if (fault) {
    transfer.fault_code = static_cast<int>(fault->code);
    transfer.fault_text =
        std::string(text(fault->code)) + (fault->detail.empty() ? "" : ": " + fault->detail);
    transfer.fault_text = cut(transfer.fault_text, 256);
  }
  transfer.password.clear();
  put(change, transfer);
  add_event(change, event::transfer_complete);
  add_event(change, transfer.is_upload ? event::m_upload : event::m_download, transfer.command_key);
}

void forget(Transaction &change, const Transfer &transfer) {
  change.erase(transfer.record);
  const std::string_view code = transfer.is_upload ? event::m_upload : event::m_download;
  for (const Event &event : pending_events(change))
    if (event.code == code && event.command_key == transfer.command_key) {
      acknowledge(change, std::span(&event, 1));
      break;
    }
  const auto left = transfers(change);
  if (std::ranges::none_of(left, [](const Transfer &each) { return each.state == TransferState::finished; }))
    erase_event(change, event::transfer_complete);
}

std::optional<Transfer> due_transfer(const Transaction &store, std::time_t now) {
  for (Transfer &transfer : transfers(store))
    if (transfer.state == TransferState::waiting && transfer.due <= now) return std::move(transfer);
  return std::nullopt;
}

void resume_transfers(Store &store) {
  store.change([](Transaction &change) {
    for (Transfer &transfer : transfers(change)) {
      if (transfer.state != TransferState::running) continue;
      transfer.state = TransferState::waiting;
      put(change, transfer);
    }
  });
}

void install_firmware(Store &store) {
  const auto waiting = store.read(transfers);
  for (const Transfer &transfer : waiting) {
    if (transfer.state != TransferState::installing) continue;
    const host::NvramEntry version{host::configuration_section, "TR_AddSoftVer", transfer.target_file};
    host::nvram_store(std::span(&version, 1));
    store.change([&transfer](Transaction &change) { finish(change, transfer, std::nullopt); });
  }
}

} // namespace kova::agent
