#include "agent/stun.hpp"

#include "agent/attributes.hpp"
#include "agent/log.hpp"
#include "agent/names.hpp"
#include "agent/reach.hpp"
#include "agent/values.hpp"
#include "device/faults.hpp"
#include "platform/host/nvram_admin.hpp"

#include <arpa/inet.h>
#include <kova/frame.h>
#include <sys/random.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>

namespace kova::agent {
namespace {

std::string as_text(const sockaddr_in &address) {
  char text[INET_ADDRSTRLEN];
  inet_ntop(AF_INET, &address.sin_addr, text, sizeof text);
  return text;
}

// The getters of the user and the password always answer "".
std::string stored_setting(const char *key) {
  return host::nvram_find(host::configuration_section,
                          (gSecondaryInstance != 0 ? "S_" : "") + std::string(key))
      .value_or("");
}

void set_own(const char *path, const std::string &value) {
  model::find(path)->set.call(value.c_str());
}

} // namespace

bool is_first(Store &store, const UdpRequest &request) {
  bool first = false;
  store.change([&](Transaction &change) {
    // "TIME\nID\nID...": of the newest time, all that came.
    const std::string last = change.get(stored::udp_requests).value_or("0\n");
    const long long now = std::stoll(request.timestamp), before = std::stoll(last);
    first =
        now > before || (now == before && (last + "\n").find("\n" + request.id + "\n") == std::string::npos);
    if (first)
      change.put(stored::udp_requests, (now > before ? request.timestamp : last) + "\n" + request.id);
  });
  return first;
}

struct Stun::Resolving {
  uv_getaddrinfo_t query{};
  Stun *stun;
  std::weak_ptr<bool> alive;
};

Stun::Stun(uv_loop_t *loop, Store &store, std::function<void()> requested)
    : loop_(loop), store_(store), requested_(std::move(requested)) {}

Stun::~Stun() {
  close();
}

void Stun::open() {
  socket_ = new uv_udp_t{};
  uv_udp_init(loop_, socket_);
  socket_->data = this;
  sockaddr_in any{};
  uv_ip4_addr("0.0.0.0", 0, &any);
  uv_udp_bind(socket_, reinterpret_cast<sockaddr *>(&any), 0);
  uv_udp_recv_start(
      socket_,
      [](uv_handle_t *, std::size_t, uv_buf_t *buffer) {
        static char room[2048];
        *buffer = uv_buf_init(room, sizeof room);
      },
      [](uv_udp_t *socket, ssize_t size, const uv_buf_t *buffer, const sockaddr *, unsigned) {
        if (size > 0)
          static_cast<Stun *>(socket->data)->receive({buffer->base, static_cast<std::size_t>(size)});
      });
}

void Stun::close() {
  if (socket_ == nullptr) return;
  uv_close(reinterpret_cast<uv_handle_t *>(std::exchange(socket_, nullptr)),
           [](uv_handle_t *handle) { delete reinterpret_cast<uv_udp_t *>(handle); });
  server_.clear();
  address_.reset();
  mapped_.clear();
  published_.clear();
  awaits_answer_ = wants_credentials_ = has_changed_ = false;
}

void Stun::resolve(const std::string &host, const std::string &port) {
  server_ = host + ":" + port;
  address_.reset();
  auto *resolving = new Resolving{{}, this, alive_};
  resolving->query.data = resolving;
  addrinfo hints{};
  hints.ai_family = AF_INET;
  hints.ai_socktype = SOCK_DGRAM;
  const int failed = uv_getaddrinfo(
      loop_, &resolving->query,
      [](uv_getaddrinfo_t *query, int status, addrinfo *found) {
        const std::unique_ptr<Resolving> done(static_cast<Resolving *>(query->data));
        if (status == 0 && !done->alive.expired()) {
          std::memcpy(&done->stun->address_.emplace(), found->ai_addr, sizeof(sockaddr_in));
          done->stun->next_request_ = 0;
        }
        uv_freeaddrinfo(found);
      },
      host.c_str(), port.c_str(), &hints);
  if (failed != 0) delete resolving;
}

void Stun::settle() {
  if (!is_true(read_value(store_, parameter::stun_enable))) {
    if (socket_ == nullptr) return;
    set_own(parameter::nat_detected, "0");
    set_own(parameter::udp_connection_request_address, "");
    return close();
  }
  if (socket_ == nullptr) open();
  const std::string host = read_value(store_, parameter::stun_server_address),
                    port = read_value(store_, parameter::stun_server_port);
  constexpr std::time_t look_up_again = 60;
  const std::time_t now = std::time(nullptr);
  // Without a server of its own the ACS is meant; its name has to be given here all the same.
  if (host.empty()) return;
  if (server_ != host + ":" + port || (!address_ && now >= next_request_)) {
    next_request_ = now + look_up_again;
    return resolve(host, port);
  }
  if (!address_) return;
  constexpr int most_attempts = 4;
  if (awaits_answer_ && attempts_ < most_attempts) {
    ++attempts_;
    return send_request();
  }
  if (now >= next_request_) {
    // Both bounds hold for the least period, which also keeps bindings of short-lived NATs.
    next_request_ =
        now + std::max(1L, std::strtol(read_value(store_, parameter::stun_minimum_keep_alive).c_str(),
                                       nullptr, 10));
    attempts_ = 1;
    if (getrandom(id_.data(), id_.size(), 0) < 0) return;
    const std::uint32_t cookie = htonl(stun::magic_cookie);
    std::memcpy(id_.data(), &cookie, sizeof cookie);
    send_request();
  }
  publish(now);
}

void Stun::send_request() {
  awaits_answer_ = true;
  const std::string user = wants_credentials_ ? stored_setting("TR_STUN_USER") : "",
                    password = wants_credentials_ ? stored_setting("TR_STUN_PASS") : "";
  std::string message = stun::encode({id_, has_changed_, user, password});
  uv_buf_t buffer = uv_buf_init(message.data(), static_cast<unsigned>(message.size()));
  uv_udp_try_send(socket_, &buffer, 1, reinterpret_cast<sockaddr *>(&*address_));
}

void Stun::receive(std::string_view message) {
  if (message.starts_with("GET ")) {
    if (device::faults().deaf) return;
    const auto request = signed_request(message, read_value(store_, parameter::connection_request_username),
                                        read_value(store_, parameter::connection_request_password));
    if (request && is_first(store_, *request)) requested_();
    return;
  }
  const auto answer = awaits_answer_ ? stun::decode(message, id_) : std::nullopt;
  if (!answer) return;
  awaits_answer_ = false;
  if (answer->wants_credentials && !wants_credentials_) {
    wants_credentials_ = true;
    next_request_ = 0;
  } else if (answer->mapped)
    bound(*answer->mapped);
}

void Stun::bound(const sockaddr_in &mapped) {
  sockaddr_in own{};
  int length = sizeof own;
  uv_udp_getsockname(socket_, reinterpret_cast<sockaddr *>(&own), &length);
  behind_nat_ = as_text(mapped) != own_address(as_text(*address_), "9") || mapped.sin_port != own.sin_port;
  const std::string now = as_text(mapped) + ":" + std::to_string(ntohs(mapped.sin_port));
  const bool changed = now != mapped_;
  mapped_ = now;
  if (changed && !has_changed_) next_request_ = 0; // the server hears of the change once
  has_changed_ = changed;
  publish(std::time(nullptr));
}

// Its change is reported to the ACS at once, so it is not shown more often than the ACS wants to hear of it.
void Stun::publish(std::time_t now) {
  if (mapped_.empty() || mapped_ == published_ || now < earliest_notice_) return;
  set_own(parameter::nat_detected, behind_nat_ ? "1" : "0");
  set_own(parameter::udp_connection_request_address, mapped_);
  earliest_notice_ = now + std::strtol(stored_setting("TR_UDPCR_LIMIT").c_str(), nullptr, 10);
  published_ = mapped_;
  log("STUN: bound to " + mapped_ + (behind_nat_ ? ", behind a NAT" : ""));
}

} // namespace kova::agent
