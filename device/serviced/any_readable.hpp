// Several descriptors as one that is readable when any of them is.
#pragma once

#include "device/error.hpp"
#include "device/fd.hpp"

#include <sys/epoll.h>

#include <initializer_list>

namespace kova::device {

inline Fd any_readable(std::initializer_list<int> descriptors) {
  Fd any(epoll_create1(EPOLL_CLOEXEC));
  for (const int fd : descriptors) {
    epoll_event event{.events = EPOLLIN, .data = {}};
    if (epoll_ctl(any.get(), EPOLL_CTL_ADD, fd, &event) != 0) fail("cannot wait for events");
  }
  return any;
}

} // namespace kova::device
