// An HTTP server that gives every request the same answer, and keeps the last request.
#pragma once

#include "device/fd.hpp"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <atomic>
#include <mutex>
#include <string>
#include <thread>

namespace kova::test {

class HttpServer {
public:
  explicit HttpServer(std::string answer) : answer_(std::move(answer)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    EXPECT_EQ(bind(listener_.get(), reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
    EXPECT_EQ(listen(listener_.get(), 8), 0);
    getsockname(listener_.get(), reinterpret_cast<sockaddr *>(&address), &length);
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { serve(); });
  }
  ~HttpServer() {
    done_ = true;
    thread_.join();
  }
  HttpServer(const HttpServer &) = delete;
  HttpServer &operator=(const HttpServer &) = delete;

  std::string url(const std::string &path = "/") const {
    return "http://127.0.0.1:" + std::to_string(port_) + path;
  }
  std::string request() {
    const std::lock_guard lock(mutex_);
    return request_;
  }

private:
  bool readable(int fd) const {
    pollfd ready{fd, POLLIN, 0};
    while (!done_)
      if (poll(&ready, 1, 20) > 0) return true;
    return false;
  }
  static std::size_t length_of(const std::string &request) {
    const std::size_t head = request.find("\r\n\r\n"), at = request.find("Content-Length: ");
    if (head == std::string::npos) return std::string::npos;
    return head + 4 + (at == std::string::npos ? 0 : std::stoul(request.substr(at + 16)));
  }
  void serve() {
    while (readable(listener_.get())) {
      const device::Fd client(accept(listener_.get(), nullptr, nullptr));
      std::string request;
      std::array<char, 4096> bytes{};
      while (request.size() < length_of(request) && readable(client.get())) {
        const ssize_t count = recv(client.get(), bytes.data(), bytes.size(), 0);
        if (count <= 0) break;
        request.append(bytes.data(), static_cast<std::size_t>(count));
      }
      {
        const std::lock_guard lock(mutex_);
        request_ = request;
      }
      send(client.get(), answer_.data(), answer_.size(), MSG_NOSIGNAL);
    }
  }

  const std::string answer_;
  device::Fd listener_{socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)};
  uint16_t port_ = 0;
  std::string request_;
  std::mutex mutex_;
  std::atomic<bool> done_ = false;
  std::thread thread_;
};

} // namespace kova::test
