// What the service daemon takes from a connection: the same records, however the bytes are cut into pieces.
#include "device/serviced/records.hpp"

#include "fuzz/input.hpp"
#include "src/frame/channel.hpp"

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

using namespace kova;

struct Outcome {
  std::vector<device::Request> requests;
  bool malformed = false;
  std::size_t waiting = 0;
};

Outcome read(std::string_view bytes, std::size_t piece) {
  Outcome outcome;
  device::RecordStream stream;
  try {
    for (; !bytes.empty(); bytes.remove_prefix(std::min(piece, bytes.size()))) {
      stream.append(bytes.substr(0, piece));
      while (auto request = stream.next())
        outcome.requests.push_back(std::move(*request));
    }
  } catch (const device::Malformed &) {
    outcome.malformed = true;
  }
  outcome.waiting = stream.waiting();
  return outcome;
}

// Pieces of the input as they are, and as records of their own.
std::string stream_of(fuzz::Input &input) {
  std::string bytes;
  while (!input.empty()) {
    const uint8_t kind = input.byte();
    const std::string payload = input.text();
    if (kind % 4 != 0) {
      MsgRecord header{};
      std::memcpy(&header.magic, channel::magic, sizeof channel::magic);
      header.command = channel::connect_announcement + kind;
      header.cookie = kind;
      header.length =
          static_cast<uint32_t>(kind == 255 ? channel::most_payload + payload.size() : payload.size());
      bytes.append(reinterpret_cast<const char *>(&header), sizeof header);
    }
    bytes += payload;
  }
  return bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::size_t piece = input.byte() + 1U;
  const std::string bytes = stream_of(input);
  const Outcome whole = read(bytes, bytes.size()), cut = read(bytes, piece);
  std::size_t taken = 0;
  for (const device::Request &request : whole.requests) {
    taken += sizeof(MsgRecord) + request.payload.size();
    fuzz::require(request.payload.size() <= channel::most_payload);
    fuzz::require(!device::request_name(request.command).empty());
    fuzz::require(device::confirmation_of(request, 0, 1).cookie == request.cookie);
  }
  fuzz::require(taken + whole.waiting == bytes.size());
  fuzz::require(cut.malformed == whole.malformed);
  fuzz::require(std::ranges::equal(cut.requests, whole.requests, [](const auto &a, const auto &b) {
    return a.command == b.command && a.cookie == b.cookie && a.payload == b.payload;
  }));
  return 0;
}
