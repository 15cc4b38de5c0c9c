// Connection requests through a NAT: a binding kept at a STUN server, and the signed UDP messages that come
// back over it.
#pragma once

#include "agent/store.hpp"
#include "agent/stun_message.hpp"

#include <uv.h>

#include <ctime>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace kova::agent {

// Each request counts once, and an older one no more; what counted lasts.
bool is_first(Store &store, const UdpRequest &request);

class Stun {
public:
  Stun(uv_loop_t *loop, Store &store, std::function<void()> requested);
  ~Stun();
  Stun(const Stun &) = delete;
  Stun &operator=(const Stun &) = delete;
  // To be called every second while a binding is kept, otherwise when parameters have changed: follows them,
  // and keeps the binding.
  void settle();
  bool keeps_binding() const { return socket_ != nullptr; }

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
