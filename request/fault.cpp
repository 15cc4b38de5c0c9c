#include "request/fault.hpp"

#include <iterator>

namespace kova::request {

std::string_view text(FaultCode code) {
  static constexpr std::string_view texts[] = {
      "Method not supported",
      "Request denied",
      "Internal error",
      "Invalid arguments",
      "Resources exceeded",
      "Invalid parameter name",
      "Invalid parameter type",
      "Invalid parameter value",
      "Attempt to set a non-writable parameter",
      "Notification request rejected",
      "File transfer failure",
      "Upload failure",
      "File transfer server authentication failure",
      "Unsupported protocol for file transfer",
      "File transfer failure: unable to join multicast group",
      "File transfer failure: unable to contact file server",
      "File transfer failure: unable to access file",
      "File transfer failure: unable to complete download",
      "File transfer failure: file corrupted",
      "File transfer failure: file authentication failure",
  };
  const auto index = static_cast<size_t>(code) - static_cast<size_t>(FaultCode::MethodNotSupported);
  return index < std::size(texts) ? texts[index] : "";
}

} // namespace kova::request
