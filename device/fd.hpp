// A file descriptor that is closed with its owner.
#pragma once

#include <unistd.h>

#include <utility>

namespace kova::device {

class Fd {
public:
  Fd() = default;
  explicit Fd(int fd) : fd_(fd) {}
  Fd(Fd &&other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Fd &operator=(Fd &&other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }
  ~Fd() { close(); }

  int get() const { return fd_; }
  explicit operator bool() const { return fd_ >= 0; }
  int release() { return std::exchange(fd_, -1); }
  void close() {
    if (fd_ >= 0) ::close(std::exchange(fd_, -1));
  }

private:
  int fd_ = -1;
};

} // namespace kova::device
