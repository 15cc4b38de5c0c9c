// Serves the connections of the service daemon in one poll loop. No client can hold it up: connections are bounded in
// number, records in length and in the time they may take to arrive.
#pragma once

#include "device/fd.hpp"
#include "device/serviced/records.hpp"

#include <poll.h>
#include <sys/types.h>

#include <chrono>
#include <functional>
#include <vector>

namespace kova::device {

class Server {
public:
  struct Handlers {
    std::function<uint32_t(const Request &)> request; // answers the result code of a confirmation
    std::function<void(pid_t client, const std::string &why)> malformed;
  };
  // Another descriptor of the daemon's, and what to do when it is readable.
  struct Watch {
    int fd = -1;
    std::function<void()> ready;
  };
  struct Limits {
    std::size_t connections = 64;
    // Beyond that number, who has been silent for so long makes room; a client that has just come may still speak.
    std::chrono::milliseconds silence = std::chrono::milliseconds(100);
    std::chrono::milliseconds record_time = std::chrono::seconds(5);
  };

  // listener: a listening socket that does not block. The loop ends when stop becomes readable.
  Server(int listener, int stop, Handlers handlers, Limits limits, Watch watch)
      : listener_(listener), stop_(stop), handlers_(std::move(handlers)), limits_(limits),
        watch_(std::move(watch)) {}
  void run();

private:
  using Clock = std::chrono::steady_clock;
  struct Connection {
    Fd socket;
    RecordStream stream;
    Clock::time_point record_begun, last_heard;
  };

  std::vector<pollfd> polled(bool can_accept) const;
  int poll_timeout(bool can_accept) const;
  bool is_full() const { return connections_.size() >= limits_.connections; }
  bool anyone_silent() const;
  void serve(Connection &connection);
  void take_bytes(Connection &connection, std::string_view bytes);
  bool answer(Connection &connection, const Request &request);
  void refuse(Connection &connection, const std::string &why);
  void refuse_overdue();
  void accept_waiting();
  bool make_room();

  int listener_, stop_;
  Handlers handlers_;
  Limits limits_;
  Watch watch_;
  std::vector<Connection> connections_;
};

} // namespace kova::device
