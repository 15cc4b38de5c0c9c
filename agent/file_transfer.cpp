// The files of the device that the ACS may fetch and replace.
#include "agent/http.hpp"
#include "agent/log.hpp"
#include "agent/names.hpp"
#include "agent/transfers.hpp"
#include "agent/values.hpp"
#include "device/device.hpp"
#include "device/log.hpp"
#include "device/paths.hpp"
#include "request/configuration.hpp"
#include "request/request_text.hpp"

#include <algorithm>
#include <fstream>

namespace kova::agent {
namespace {

namespace fs = std::filesystem;
using request::Fault;
using request::FaultCode;

constexpr std::size_t largest_file = std::size_t{64} << 20;

// Where the installation of the next boot finds it.
fs::path firmware_image() {
  return device::on_device("/var/config/firmware.img");
}

// What was moved, removed again whatever comes of it.
struct TemporaryFile {
  explicit TemporaryFile(const Transfer &transfer)
      : path(device::run_dir() / ("transfer-" + transfer.record.substr(transfer.record.rfind('/') + 1))) {}
  ~TemporaryFile() {
    std::error_code ignored;
    fs::remove(path, ignored);
  }
  TemporaryFile(const TemporaryFile &) = delete;
  TemporaryFile &operator=(const TemporaryFile &) = delete;
  const fs::path path;
};

std::string name_of(const Transfer &transfer) {
  if (!transfer.target_file.empty()) return transfer.target_file;
  const std::string path = transfer.url.substr(0, transfer.url.find_first_of("?#"));
  return path.substr(path.rfind('/') + 1);
}

void check_size(const Transfer &transfer, const fs::path &file) {
  const auto size = fs::file_size(file);
  if (size == 0 || (transfer.file_size != 0 && size != transfer.file_size))
    throw Fault{"", FaultCode::FileCorrupted,
                "it has " + std::to_string(size) + " bytes" +
                    (transfer.file_size != 0 ? ", not " + std::to_string(transfer.file_size) : "")};
}

void keep_firmware(Store &store, Transfer &transfer, const fs::path &file) {
  fs::create_directories(firmware_image().parent_path());
  fs::copy_file(file, firmware_image(), fs::copy_options::overwrite_existing);
  transfer.state = TransferState::installing;
  transfer.target_file = cut(name_of(transfer), 64);
  store.change([&transfer](Transaction &change) {
    put(change, transfer);
    change.put(stored::installation, "");
  });
}

void take_configuration(const fs::path &file) {
  std::vector<request::Assignment> assignments;
  try {
    assignments = request::read_request(file.string());
  } catch (const request::UsageError &error) {
    throw Fault{"", FaultCode::FileCorrupted, error.what()};
  }
  const device::Turn turn;
  const request::Setting setting = request::set_values(assignments);
  if (!setting.accepted)
    throw Fault{"", FaultCode::FileCorrupted,
                setting.faults.empty() ? "the device refuses it"
                                       : setting.faults.front().path + ": " + setting.faults.front().detail};
}

void write_configuration(const fs::path &file) {
  const device::Turn turn(device::Turn::Kind::reading);
  std::ofstream text(file);
  for (const auto &[path, value] : request::get_configuration("").values)
    if (value.find('\n') == std::string::npos) text << path << '=' << value << '\n';
  if (!text.flush()) throw Fault{"", FaultCode::InternalError, "the device has no room for the file"};
}

void move_file(Store &store, Transfer &transfer) {
  const Server server{transfer.url, transfer.username, transfer.password, {}};
  const TemporaryFile file(transfer);
  if (transfer.file_type == file_type::log) return upload(server, device::log_file());
  if (transfer.is_upload) {
    write_configuration(file.path);
    return upload(server, file.path);
  }
  download(server, file.path, largest_file);
  check_size(transfer, file.path);
  if (transfer.file_type == file_type::firmware)
    keep_firmware(store, transfer, file.path);
  else
    take_configuration(file.path);
}

} // namespace

void carry_out(Store &store, Transfer transfer) {
  transfer.state = TransferState::running;
  transfer.start = std::time(nullptr);
  store.change([&transfer](Transaction &change) { put(change, transfer); });
  std::optional<Fault> fault;
  try {
    move_file(store, transfer);
  } catch (const Fault &failure) {
    fault = failure;
  } catch (const std::exception &error) {
    fault = Fault{"", FaultCode::InternalError, error.what()};
  }
  log((transfer.is_upload ? "upload " : "download ") + transfer.command_key + ": " +
      (fault ? std::string(text(fault->code)) + " " + fault->detail : "done"));
  if (transfer.state == TransferState::installing && !fault) return;
  store.change([&](Transaction &change) { finish(change, transfer, fault); });
}

} // namespace kova::agent
