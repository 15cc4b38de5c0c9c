// Serves the connections of the service daemon. No client can hold it up: connections are bounded in number,
// records in length and in the time they may take to arrive.
#pragma once

#include "device/serviced/loop.hpp"
#include "device/serviced/records.hpp"

#include <sys/types.h>

#include <array>
#include <chrono>
#include <functional>
#include <list>
#include <string>

namespace kova::device {

class Server {
public:
  struct Handlers {
    std::function<uint32_t(const Request &)> request; // answers the result code of a confirmation
    std::function<void(pid_t client, const std::string &why)> malformed;
  };
  struct Limits {
    std::size_t connections = 64;
    // Beyond that number, who has been silent for so long makes room, and if nobody is, who has been there
    // for longest and had its turn.
    std::chrono::milliseconds silence{100}, turn{1000};
    std::chrono::milliseconds record_time{5000};
  };

  // Throws std::runtime_error when it cannot listen on the path.
  Server(Loop &loop, const char *path, Handlers handlers, Limits limits);
  Server(const Server &) = delete;
  Server &operator=(const Server &) = delete;

private:
  using Milliseconds = std::chrono::milliseconds;
  struct Connection {
    Server *server;
    Owned<uv_pipe_t> pipe;
    RecordStream stream;
    Milliseconds accepted, last_heard, record_begun;
    bool open = true;
  };

  Milliseconds now() const { return Milliseconds(uv_now(loop_)); }
  bool is_full() const { return connections_.size() >= limits_.connections; }
  void accept_waiting();
  void take_bytes(Connection &connection, std::string_view bytes);
  bool answer(Connection &connection, const Request &request);
  void refuse(Connection &connection, const std::string &why);
  void end(Connection &connection);
  void take_what_is_there(Connection &connection);
  bool make_room();
  void look_after();
  void forget_ended();

  Loop &loop_;
  Handlers handlers_;
  Limits limits_;
  std::list<Connection> connections_;
  std::array<char, 4096> bytes_{};
  bool one_waits_ = false;
  Timer rounds_; // while there are connections
  Owned<uv_pipe_t> listener_;
};

} // namespace kova::device
