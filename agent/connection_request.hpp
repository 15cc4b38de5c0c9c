// The listener for connection requests: HTTP with Digest at a path that nobody can guess.
#pragma once

#include <cstdint>
#include <ctime>
#include <deque>
#include <functional>
#include <string>

struct MHD_Daemon;

namespace kova::agent {

struct Credentials {
  std::string username, password;
};

// So many random bytes as hexadecimal digits.
std::string random_digits(std::size_t bytes);

class ConnectionRequestListener {
public:
  using Ask = std::function<Credentials()>;
  using Accept = std::function<void()>;
  // Listens on all addresses, IPv6 too where the host has it. Throws std::runtime_error when the port is
  // taken.
  ConnectionRequestListener(std::uint16_t port, std::string path, Ask credentials, Accept accept);
  ~ConnectionRequestListener();
  ConnectionRequestListener(const ConnectionRequestListener &) = delete;
  ConnectionRequestListener &operator=(const ConnectionRequestListener &) = delete;

  std::uint16_t port() const;
  int poll_fd() const; // readable when serve() has something to do; it also wants to be called now and then
  void serve();

private:
  friend struct ConnectionRequestHandler;
  bool throttled();
  const std::string seed_ = random_digits(16); // of the nonces; the daemon does not copy it
  const std::string path_;
  const Ask credentials_;
  const Accept accept_;
  std::deque<std::time_t> accepted_; // within the last minute
  MHD_Daemon *daemon_ = nullptr;
};

} // namespace kova::agent
