// Requests as they come over the socket: a 36-byte header, then the payload, in pieces of any size.
#pragma once

#include <kova/frame.h>

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kova::device {

struct Request {
  uint32_t pid, source_type, destination_type, command, confirm, cookie, word;
  std::string payload;
};

// The stream cannot be followed any further.
struct Malformed : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class RecordStream {
public:
  void append(std::string_view bytes) { bytes_ += bytes; }
  // The next whole record, taken from the stream. Throws Malformed for what can never become one.
  std::optional<Request> next();
  // Bytes of a record of which the rest has not come yet.
  std::size_t waiting() const { return bytes_.size(); }

private:
  std::string bytes_;
};

// The request's name without its prefix ("restart_wifi"), or "unknown".
std::string_view request_name(uint32_t command);

// The reply that pairs with a request by its cookie.
MsgRecord confirmation_of(const Request &request, uint32_t result, uint32_t own_pid);

} // namespace kova::device
