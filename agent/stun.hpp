// Connection requests through a NAT: a binding kept at a STUN server, and the signed UDP messages that come back over it.
#pragma once

#include "agent/store.hpp"

#include <netinet/in.h>
#include <uv.h>

#include <array>
#include <ctime>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace kova::agent {

// STUN messages as bytes.
namespace stun {

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
// Each request counts once, and an older one no more; what counted lasts.
bool is_first(Store &store, const UdpRequest &request);

class Stun {
public:
  Stun(uv_loop_t *loop, Store &store, std::function<void()> requested);
  ~Stun();
  Stun(const Stun &) = delete;
  Stun &operator=(const Stun &) = delete;
  // To be called every second: follows the parameters, and keeps the binding.
  void settle();

private:
  struct Resolving;
  void open();
  void close();
  void resolve(const std::string &host, const std::string &port);
  void send_request();
  void receive(std::string_view message);
  void bound(const sockaddr_in &mapped);
  void publish(std::time_t now);

  uv_loop_t *loop_;
  Store &store_;
  const std::function<void()> requested_;
  uv_udp_t *socket_ = nullptr;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true); // for look-ups that end after this
  std::string server_;                                         // "host:port" that was looked up
  std::optional<sockaddr_in> address_;
  stun::TransactionId id_{};
  bool awaits_answer_ = false, wants_credentials_ = false, has_changed_ = false;
  int attempts_ = 0;
  std::time_t next_request_ = 0, earliest_notice_ = 0;
  std::string mapped_, published_;
  bool behind_nat_ = false;
};

} // namespace kova::agent
