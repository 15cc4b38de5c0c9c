// What comes and goes over UDP: STUN's bindings, and connection requests with a signature.
#pragma once

#include <netinet/in.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kova::agent {

// STUN messages as bytes.
namespace stun {

constexpr std::uint32_t magic_cookie = 0x2112A442; // with which an id begins

using TransactionId = std::array<unsigned char, 16>;

struct BindingRequest {
  TransactionId id{};
  bool binding_has_changed = false;
  std::string username, password; // "" when the server has not asked for them
};
std::string encode(const BindingRequest &request);

struct BindingAnswer {
  std::optional<sockaddr_in> mapped; // none in an error
  bool wants_credentials = false;
};
// None for what is no answer to this request.
std::optional<BindingAnswer> decode(std::string_view message, const TransactionId &id);

} // namespace stun

struct UdpRequest {
  std::string timestamp, id;
};
// What the message is when its signature is right.
std::optional<UdpRequest> signed_request(std::string_view message, const std::string &username,
                                         const std::string &password);
} // namespace kova::agent
