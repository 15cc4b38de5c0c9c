#include "device/diag/echo_server.hpp"

#include "device/date_time.hpp"
#include "device/diag/echo_statistics.hpp"
#include "device/diag/failure.hpp"
#include "device/diag/host.hpp"
#include "device/fd.hpp"
#include "device/file_system.hpp"
#include "device/paths.hpp"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/signalfd.h>
#include <sys/socket.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstring>
#include <optional>
#include <vector>

namespace kova::diag {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t largest_packet = 65536;
// Under load the file is written so often only.
constexpr auto between_writes = std::chrono::milliseconds(50);

uint32_t microseconds() {
  const auto time = Clock::now().time_since_epoch();
  return static_cast<uint32_t>(std::chrono::duration_cast<std::chrono::microseconds>(time).count());
}

// The fields that an echo-plus server fills in, in network order. The first is the client's own number.
struct EchoPlus {
  uint32_t client_number, number, received_at, replied_at, failures;
};

in6_addr mapped(const in_addr &address) {
  in6_addr six{};
  six.s6_addr[10] = six.s6_addr[11] = 0xFF;
  std::memcpy(&six.s6_addr[12], &address, sizeof address);
  return six;
}

in6_addr address_of(const sockaddr_storage &name) {
  if (name.ss_family == AF_INET) return mapped(reinterpret_cast<const sockaddr_in &>(name).sin_addr);
  return reinterpret_cast<const sockaddr_in6 &>(name).sin6_addr;
}

// Addresses of both kinds as one; none for the empty text, which allows everybody.
std::optional<in6_addr> source_of(const std::string &text) {
  in_addr four{};
  in6_addr six{};
  if (text.empty()) return std::nullopt;
  if (inet_pton(AF_INET, text.c_str(), &four) == 1) return mapped(four);
  if (inet_pton(AF_INET6, text.c_str(), &six) == 1) return six;
  throw Failure(state::other, "not an address: " + text);
}

void set_option(const device::Fd &socket, int level, int option, int value) {
  setsockopt(socket.get(), level, option, &value, sizeof value);
}

void keep_to(const device::Fd &socket, const std::string &interface) {
  if (!interface.empty() && setsockopt(socket.get(), SOL_SOCKET, SO_BINDTODEVICE, interface.data(),
                                       static_cast<socklen_t>(interface.size())) != 0)
    throw Failure(state::internal, "cannot keep to interface " + interface + ": " + std::strerror(errno));
}

template <typename Address>
bool bind_to(const device::Fd &socket, const Address &name) {
  return bind(socket.get(), reinterpret_cast<const sockaddr *>(&name), sizeof name) == 0;
}

// Takes packets of IPv4 too.
bool listen_on_ipv6(const device::Fd &socket, uint16_t port) {
  set_option(socket, IPPROTO_IPV6, IPV6_V6ONLY, 0);
  set_option(socket, IPPROTO_IPV6, IPV6_RECVPKTINFO, 1);
  sockaddr_in6 name{};
  name.sin6_family = AF_INET6;
  name.sin6_port = htons(port);
  return bind_to(socket, name);
}

bool listen_on_ipv4(const device::Fd &socket, uint16_t port) {
  set_option(socket, IPPROTO_IP, IP_PKTINFO, 1);
  sockaddr_in name{};
  name.sin_family = AF_INET;
  name.sin_port = htons(port);
  return bind_to(socket, name);
}

device::Fd listening_socket(const Options &options) {
  const auto port = static_cast<uint16_t>(options.port);
  expect_interface(options.interface);
  for (const int family : {AF_INET6, AF_INET}) {
    device::Fd socket(::socket(family, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket) continue;
    keep_to(socket, options.interface); // ahead of the port, which may be taken on another interface
    if (family == AF_INET6 ? listen_on_ipv6(socket, port) : listen_on_ipv4(socket, port)) return socket;
    if (errno != EADDRNOTAVAIL) break;
  }
  throw Failure(state::internal,
                "cannot listen on port " + std::to_string(port) + ": " + std::strerror(errno));
}

class EchoServer {
public:
  explicit EchoServer(const Options &options)
      : source_(source_of(options.source)), socket_(listening_socket(options)), plus_(options.echo_plus),
        file_(device::on_device(options.secondary ? "/tmp/sec_udpEchoServerStatistics"
                                                  : "/tmp/udpEchoServerStatistics")) {}

  // Ends when `end` is readable.
  void run(int end) {
    write_statistics();
    std::array<pollfd, 2> ready{{{end, POLLIN, 0}, {socket_.get(), POLLIN, 0}}};
    while (true) {
      poll(ready.data(), ready.size(), unwritten_ ? static_cast<int>(between_writes.count()) : -1);
      if (ready[0].revents != 0) break;
      if (ready[1].revents != 0) answer_waiting();
      if (unwritten_ && Clock::now() - written_at_ >= between_writes) write_statistics();
    }
    if (unwritten_) write_statistics();
  }

private:
  void answer_waiting() {
    constexpr int at_most = 256; // then the statistics have their turn
    for (int i = 0; i < at_most && answer_one(); i++) {
    }
  }

  // False when no packet waits.
  bool answer_one() {
    sockaddr_storage sender{};
    iovec part{packet_.data(), packet_.size()};
    msghdr message{};
    message.msg_name = &sender;
    message.msg_namelen = sizeof sender;
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control_.data(); // the address that was asked, which is to answer
    message.msg_controllen = control_.size();
    const ssize_t length = recvmsg(socket_.get(), &message, 0);
    if (length < 0) return false;
    const uint32_t received_at = microseconds();
    if (!is_allowed(sender)) return true;
    note_received(static_cast<uint32_t>(length));
    part.iov_len = static_cast<std::size_t>(length);
    if (plus_ && part.iov_len >= sizeof(EchoPlus)) stamp(received_at);
    if (sendmsg(socket_.get(), &message, MSG_NOSIGNAL) != length) {
      failures_++;
      return true;
    }
    statistics_.packets_responded++;
    statistics_.bytes_responded += static_cast<uint32_t>(length);
    return true;
  }

  bool is_allowed(const sockaddr_storage &sender) const {
    const in6_addr address = address_of(sender);
    return !source_ || std::memcmp(&*source_, &address, sizeof address) == 0;
  }

  void note_received(uint32_t length) {
    statistics_.packets_received++;
    statistics_.bytes_received += length;
    statistics_.last_packet = device::now();
    if (statistics_.packets_received == 1) statistics_.first_packet = statistics_.last_packet;
    unwritten_ = true;
  }

  void stamp(uint32_t received_at) {
    EchoPlus fields{};
    std::memcpy(&fields, packet_.data(), sizeof fields);
    fields.number = htonl(statistics_.packets_responded + 1);
    fields.received_at = htonl(received_at);
    fields.failures = htonl(failures_);
    fields.replied_at = htonl(microseconds());
    std::memcpy(packet_.data(), &fields, sizeof fields);
  }

  void write_statistics() {
    device::write_file(file_, statistics_.file_content());
    written_at_ = Clock::now();
    unwritten_ = false;
  }

  std::optional<in6_addr> source_;
  device::Fd socket_;
  bool plus_;
  std::string file_;
  EchoStatistics statistics_;
  uint32_t failures_ = 0;
  bool unwritten_ = false;
  Clock::time_point written_at_;
  std::vector<char> packet_ = std::vector<char>(largest_packet);
  alignas(cmsghdr) std::array<char, 256> control_{};
};

} // namespace

void serve_echo(const Options &options) {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int number : {SIGTERM, SIGINT, SIGHUP})
    sigaddset(&signals, number);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  const device::Fd end(signalfd(-1, &signals, SFD_CLOEXEC));
  EchoServer(options).run(end.get());
}

} // namespace kova::diag
