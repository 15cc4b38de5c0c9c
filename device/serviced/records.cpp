#include "device/serviced/records.hpp"

#include "src/frame/channel.hpp"

#include <algorithm>
#include <cstring>

namespace kova::device {
namespace {

constexpr std::string_view magic(channel::magic, sizeof channel::magic);

std::string_view without_prefix(std::string_view name) {
  return name.substr(name.find('_') + 1);
}

} // namespace

std::optional<Request> RecordStream::next() {
  const std::size_t seen = std::min(bytes_.size(), magic.size());
  if (bytes_.compare(0, seen, magic.substr(0, seen)) != 0) throw Malformed("no record starts here");
  MsgRecord header{};
  if (bytes_.size() < sizeof header) return std::nullopt;
  std::memcpy(&header, bytes_.data(), sizeof header);
  if (header.length > channel::most_payload)
    throw Malformed("a payload of " + std::to_string(header.length) + " bytes");
  if (bytes_.size() < sizeof header + header.length) return std::nullopt;
  Request request{.pid = header.sourcePid,
                  .source_type = header.sourceType,
                  .destination_type = header.destinationType,
                  .command = header.command,
                  .confirm = header.confirm,
                  .cookie = header.cookie,
                  .word = header.wordData,
                  .payload = bytes_.substr(sizeof header, header.length)};
  bytes_.erase(0, sizeof header + header.length);
  return request;
}

std::string_view request_name(uint32_t command) {
  switch (command) {
#define REQUEST(name, code)                                                                                  \
  case code:                                                                                                 \
    return without_prefix(#name);
#define TEXT_REQUEST(name, code) REQUEST(name, code)
#include "src/frame/requests.def"
#undef REQUEST
#undef TEXT_REQUEST
  default:
    return "unknown";
  }
}

MsgRecord confirmation_of(const Request &request, uint32_t result, uint32_t own_pid) {
  MsgRecord reply{};
  std::memcpy(&reply.magic, magic.data(), magic.size());
  reply.sourcePid = own_pid;
  reply.sourceType = channel::daemon_type;
  reply.destinationType = request.source_type;
  reply.command = channel::confirmation;
  reply.cookie = request.cookie;
  reply.wordData = result;
  return reply;
}

} // namespace kova::device
