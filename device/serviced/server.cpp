#include "device/serviced/server.hpp"

#include <sys/socket.h>

#include <algorithm>
#include <cerrno>

namespace kova::device {
namespace {

// Places of the descriptors that are polled; the connections follow.
constexpr std::size_t stop_place = 0, listener_place = 1, watch_place = 2, first_connection = 3;

pid_t client_of(int socket) {
  ucred credentials{};
  socklen_t length = sizeof credentials;
  return getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &credentials, &length) == 0 ? credentials.pid : 0;
}

} // namespace

void Server::run() {
  while (true) {
    const bool can_accept = !is_full() || anyone_silent();
    std::vector<pollfd> events = polled(can_accept);
    if (poll(events.data(), events.size(), poll_timeout(can_accept)) < 0 && errno != EINTR) return;
    if (events[stop_place].revents != 0) return;
    for (std::size_t i = 0; i < connections_.size(); i++)
      if (events[first_connection + i].revents != 0) serve(connections_[i]);
    refuse_overdue();
    std::erase_if(connections_, [](const Connection &connection) { return !connection.socket; });
    if (events[listener_place].revents != 0) accept_waiting();
    if (events[watch_place].revents != 0) watch_.ready();
  }
}

std::vector<pollfd> Server::polled(bool can_accept) const {
  std::vector<pollfd> events{
      {stop_, POLLIN, 0}, {can_accept ? listener_ : -1, POLLIN, 0}, {watch_.fd, POLLIN, 0}};
  for (const Connection &connection : connections_)
    events.push_back({connection.socket.get(), POLLIN, 0});
  return events;
}

bool Server::anyone_silent() const {
  return std::ranges::any_of(connections_, [this](const Connection &connection) {
    return Clock::now() - connection.last_heard >= limits_.silence;
  });
}

// Milliseconds until the first unfinished record is overdue, or somebody has been silent for long enough.
int Server::poll_timeout(bool can_accept) const {
  auto first = Clock::time_point::max();
  for (const Connection &connection : connections_) {
    if (connection.stream.waiting() > 0)
      first = std::min(first, connection.record_begun + limits_.record_time);
    if (!can_accept) first = std::min(first, connection.last_heard + limits_.silence);
  }
  if (first == Clock::time_point::max()) return -1;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(first - Clock::now()).count();
  return static_cast<int>(std::max(left, std::chrono::milliseconds::rep{0}));
}

void Server::serve(Connection &connection) {
  char bytes[4096];
  const ssize_t count = recv(connection.socket.get(), bytes, sizeof bytes, MSG_DONTWAIT);
  if (count > 0) return take_bytes(connection, {bytes, static_cast<std::size_t>(count)});
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
  if (const std::size_t waiting = connection.stream.waiting(); waiting > 0)
    return refuse(connection, "closed after " + std::to_string(waiting) + " bytes of a record");
  connection.socket.close();
}

void Server::take_bytes(Connection &connection, std::string_view bytes) {
  connection.last_heard = Clock::now();
  if (connection.stream.waiting() == 0) connection.record_begun = connection.last_heard;
  connection.stream.append(bytes);
  try {
    while (const auto request = connection.stream.next()) {
      connection.record_begun = connection.last_heard;
      if (!answer(connection, *request)) return connection.socket.close();
    }
  } catch (const Malformed &why) {
    refuse(connection, why.what());
  }
}

// False when the client does not take its confirmation: it is not waited for.
bool Server::answer(Connection &connection, const Request &request) {
  const uint32_t result = handlers_.request(request);
  if (request.confirm == 0) return true;
  const MsgRecord reply = confirmation_of(request, result, static_cast<uint32_t>(getpid()));
  return send(connection.socket.get(), &reply, sizeof reply, MSG_DONTWAIT | MSG_NOSIGNAL) == sizeof reply;
}

void Server::refuse(Connection &connection, const std::string &why) {
  handlers_.malformed(client_of(connection.socket.get()), why);
  connection.socket.close();
}

void Server::refuse_overdue() {
  for (Connection &connection : connections_)
    if (connection.stream.waiting() > 0 && Clock::now() - connection.record_begun >= limits_.record_time)
      refuse(connection,
             "gave up after " + std::to_string(connection.stream.waiting()) + " bytes of a record");
}

void Server::accept_waiting() {
  while (!is_full() || make_room()) {
    Fd socket(accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC));
    if (!socket && (errno == EMFILE || errno == ENFILE)) {
      if (make_room()) continue;
      poll(nullptr, 0, 10); // until another process lets go of some
    }
    if (!socket) return;
    const auto now = Clock::now();
    connections_.push_back({std::move(socket), {}, now, now});
  }
}

// Drops the connection that has been silent for longest.
bool Server::make_room() {
  while (true) {
    const auto silent = std::ranges::min_element(connections_, {}, &Connection::last_heard);
    if (silent == connections_.end() || Clock::now() - silent->last_heard < limits_.silence) return false;
    const auto last_heard = silent->last_heard;
    serve(*silent);
    if (silent->socket && silent->last_heard != last_heard) continue; // it has just spoken
    connections_.erase(silent);
    return true;
  }
}

} // namespace kova::device
