#include "device/serviced/server.hpp"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>

namespace kova::device {
namespace {

uv_stream_t *stream_of(const Owned<uv_pipe_t> &pipe) {
  return reinterpret_cast<uv_stream_t *>(pipe.get());
}

int descriptor_of(const Owned<uv_pipe_t> &pipe) {
  uv_os_fd_t descriptor = -1;
  uv_fileno(reinterpret_cast<const uv_handle_t *>(pipe.get()), &descriptor);
  return descriptor;
}

pid_t client_of(const Owned<uv_pipe_t> &pipe) {
  ucred credentials{};
  socklen_t length = sizeof credentials;
  return getsockopt(descriptor_of(pipe), SOL_SOCKET, SO_PEERCRED, &credentials, &length) == 0
             ? credentials.pid
             : 0;
}

Owned<uv_pipe_t> new_pipe(Loop &loop) {
  Owned<uv_pipe_t> pipe(new uv_pipe_t{});
  uv_pipe_init(loop, pipe.get(), 0);
  return pipe;
}

} // namespace

Server::Server(Loop &loop, const char *path, Handlers handlers, Limits limits)
    : loop_(loop), handlers_(std::move(handlers)), limits_(limits), rounds_(loop, [this] { look_after(); }),
      listener_(new_pipe(loop)) {
  const auto accept = [](uv_stream_t *listener, int) {
    auto *server = static_cast<Server *>(listener->data);
    server->one_waits_ = true;
    server->accept_waiting();
  };
  const std::string what = std::string("cannot listen on ") + path;
  listener_->data = this;
  unlink(path);
  expect_done(uv_pipe_bind(listener_.get(), path), what);
  expect_done(uv_listen(stream_of(listener_), SOMAXCONN, accept), what);
}

// libuv takes the next one in when the one that waits was accepted.
void Server::accept_waiting() {
  if (!one_waits_ || (is_full() && !make_room())) return;
  one_waits_ = false;
  Connection &connection =
      connections_.emplace_back(Connection{this, new_pipe(loop_), RecordStream(), now(), now(), now()});
  connection.pipe->data = &connection;
  const auto room = [](uv_handle_t *handle, size_t, uv_buf_t *buffer) {
    auto &bytes = static_cast<Connection *>(handle->data)->server->bytes_;
    *buffer = uv_buf_init(bytes.data(), static_cast<unsigned>(bytes.size()));
  };
  const auto take = [](uv_stream_t *stream, ssize_t count, const uv_buf_t *buffer) {
    auto &from = *static_cast<Connection *>(stream->data);
    Server &server = *from.server;
    if (count > 0) server.take_bytes(from, {buffer->base, static_cast<std::size_t>(count)});
    if (count < 0) server.end(from);
    server.forget_ended();
    server.accept_waiting();
  };
  if (uv_accept(stream_of(listener_), stream_of(connection.pipe)) != 0 ||
      uv_read_start(stream_of(connection.pipe), room, take) != 0)
    connections_.pop_back();
  constexpr auto round = Milliseconds(20);
  if (!rounds_.runs()) rounds_.start(round, round);
}

void Server::take_bytes(Connection &connection, std::string_view bytes) {
  connection.last_heard = now();
  if (connection.stream.waiting() == 0) connection.record_begun = now();
  connection.stream.append(bytes);
  try {
    while (const auto request = connection.stream.next()) {
      connection.record_begun = now();
      connection.open = answer(connection, *request);
      if (!connection.open) return;
    }
  } catch (const Malformed &why) {
    refuse(connection, why.what());
  }
}

// False when the client does not take its confirmation: it is not waited for.
bool Server::answer(Connection &connection, const Request &request) {
  const uint32_t result = handlers_.request(request);
  if (request.confirm == 0) return true;
  MsgRecord reply = confirmation_of(request, result, static_cast<uint32_t>(getpid()));
  const uv_buf_t buffer = uv_buf_init(reinterpret_cast<char *>(&reply), sizeof reply);
  return uv_try_write(stream_of(connection.pipe), &buffer, 1) == sizeof reply;
}

void Server::refuse(Connection &connection, const std::string &why) {
  handlers_.malformed(client_of(connection.pipe), why);
  connection.open = false;
}

void Server::end(Connection &connection) {
  if (const std::size_t waiting = connection.stream.waiting(); waiting > 0 && connection.open)
    refuse(connection, "closed after " + std::to_string(waiting) + " bytes of a record");
  connection.open = false;
}

void Server::take_what_is_there(Connection &connection) {
  const ssize_t count = recv(descriptor_of(connection.pipe), bytes_.data(), bytes_.size(), MSG_DONTWAIT);
  if (count > 0) take_bytes(connection, {bytes_.data(), static_cast<std::size_t>(count)});
  if (count == 0) end(connection);
}

// Those who have gone make room first, and no request is lost that has come by then.
bool Server::make_room() {
  for (Connection &connection : connections_)
    take_what_is_there(connection);
  forget_ended();
  if (!is_full()) return true;
  const auto silent = std::ranges::min_element(connections_, {}, &Connection::last_heard),
             oldest = connections_.begin();
  if (now() - silent->last_heard >= limits_.silence)
    connections_.erase(silent);
  else if (now() - oldest->accepted >= limits_.turn)
    connections_.erase(oldest);
  return !is_full();
}

void Server::look_after() {
  for (Connection &connection : connections_)
    if (connection.stream.waiting() > 0 && now() - connection.record_begun >= limits_.record_time)
      refuse(connection,
             "gave up after " + std::to_string(connection.stream.waiting()) + " bytes of a record");
  forget_ended();
  accept_waiting();
  if (connections_.empty()) rounds_.stop();
}

void Server::forget_ended() {
  connections_.remove_if([](const Connection &connection) { return !connection.open; });
}

} // namespace kova::device
