// Downloads and uploads that the ACS has asked for: they are carried out after the session, and reported in a
// later one.
#pragma once

#include "agent/store.hpp"
#include "request/fault.hpp"

#include <ctime>
#include <optional>
#include <string>
#include <vector>

namespace kova::agent {

enum class TransferState { waiting = 1, running, finished, installing };

struct Transfer {
  std::string record; // its key in the store
  bool is_upload = false;
  std::string command_key, file_type, url, username, password, target_file;
  unsigned long file_size = 0; // 0: not told
  std::time_t due = 0, start = 0, complete = 0;
  TransferState state = TransferState::waiting;
  int fault_code = 0;
  std::string fault_text;
};

// File types as the ACS names them.
namespace file_type {
constexpr const char *firmware = "1 Firmware Upgrade Image", *configuration = "3 Vendor Configuration File",
                     *uploaded_configuration = "1 Vendor Configuration File", *log = "2 Vendor Log File";
} // namespace file_type

// Throws RpcFault 9004 when too many wait already.
void queue(Transaction &change, Transfer transfer);
std::vector<Transfer> transfers(const Transaction &store);
void put(Transaction &change, const Transfer &transfer);
// Finished, with its events; without a fault when none is given.
void finish(Transaction &change, Transfer transfer, const std::optional<request::Fault> &fault);
// The ACS knows of it.
void forget(Transaction &change, const Transfer &transfer);

std::optional<Transfer> due_transfer(const Transaction &store, std::time_t now);
// A transfer that a crash has ended begins anew; a firmware image that waits for a boot is installed by it.
void resume_transfers(Store &store);
void install_firmware(Store &store);

// Moves the file. A firmware image is installed by the next boot, which it asks for.
void carry_out(Store &store, Transfer transfer);

} // namespace kova::agent
