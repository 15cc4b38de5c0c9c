// The message layer of the service-control channel.
#include "src/frame/channel.hpp"
#include "src/frame/text.hpp"

#include <fcntl.h>
#include <kova/frame.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace {

using namespace kova::channel;

constexpr const char *socket_path = "/tmp/mrhd_socket";
constexpr std::size_t header_size = offsetof(MsgRecord, payload);
constexpr std::size_t receive_area = 2048;
constexpr int confirm_seconds = 10;

static_assert(header_size == 36 && sizeof(MsgRecord) == 36);

bool is_open(const MsgHandle *handle) {
  return handle->fd != -1;
}

// Sends the record whole in one call, or fails.
bool send_bytes(int fd, const MsgRecord *rec, std::size_t size) {
  return send(fd, rec, size, MSG_NOSIGNAL) == static_cast<ssize_t>(size);
}

int send_record(MsgHandle *handle, MsgRecord *rec, bool confirm, uint32_t cookie) {
  rec->sourcePid = handle->pid;
  rec->sourceType = handle->clientType;
  rec->confirm = confirm ? 1 : 0;
  if (confirm) rec->cookie = cookie;
  return send_bytes(handle->fd, rec, header_size + rec->length) ? 0 : MSG_ERR_SEND;
}

int64_t milliseconds_now() {
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000;
}

bool wait_readable(int fd, int seconds) {
  pollfd wanted = {fd, POLLIN, 0};
  int left = seconds > INT_MAX / 1000 ? INT_MAX : seconds * 1000;
  const int64_t end = milliseconds_now() + left;
  for (;;) {
    const int ready = poll(&wanted, 1, left);
    if (ready >= 0 || errno != EINTR) return ready > 0;
    // An agent's child may end meanwhile: that is no time-out, nor does it start the time anew.
    // Where the clock cannot be read, no wait is longer than the first.
    const int64_t remaining = end - milliseconds_now();
    if (remaining < left) left = remaining > 0 ? static_cast<int>(remaining) : 0;
  }
}

int open_connection(uint32_t clientType, MsgHandle *handle) {
  struct stat facts;
  if (stat(socket_path, &facts) != 0) return MSG_ERR_NO_DAEMON;

  handle->pid = static_cast<uint32_t>(getpid());
  handle->clientType = clientType;
  handle->fd = socket(AF_UNIX, SOCK_STREAM, 0);
  if (handle->fd < 0) return MSG_ERR_SOCKET;
  if (fcntl(handle->fd, F_SETFD, FD_CLOEXEC) < 0) return MSG_ERR_CLOEXEC;

  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, socket_path, sizeof address.sun_path);
  if (connect(handle->fd, reinterpret_cast<const sockaddr *>(&address), sizeof address) < 0)
    return MSG_ERR_CONNECT;

  MsgRecord announcement;
  msg_init(&announcement, daemon_type, connect_announcement);
  announcement.sourcePid = handle->pid;
  announcement.sourceType = clientType;
  return send_bytes(handle->fd, &announcement, header_size) ? 0 : MSG_ERR_ANNOUNCE;
}

} // namespace

int msg_handleInit(uint32_t clientType, MsgHandle *handle) {
  if (handle == nullptr) return MSG_ERR_ARGUMENT;
  *handle = {0, 0, -1};
  const int result = open_connection(clientType, handle);
  if (result != 0) {
    if (handle->fd >= 0) close(handle->fd);
    *handle = {0, 0, -1};
  }
  return result;
}

void msg_handleCleanup(MsgHandle *handle) {
  if (handle == nullptr || !is_open(handle)) return;
  close(handle->fd);
  *handle = {0, 0, -1};
}

void msg_init(MsgRecord *rec, uint32_t destinationType, uint32_t command) {
  if (rec == nullptr) return;
  std::memset(rec, 0, header_size);
  std::memcpy(&rec->magic, magic, sizeof magic);
  rec->destinationType = destinationType;
  rec->command = command;
}

void msg_setWordData(MsgRecord *rec, uint32_t word) {
  if (rec != nullptr) rec->wordData = word;
}

void msg_setData(MsgRecord *rec, const void *bytes, uint32_t count) {
  if (rec == nullptr || bytes == nullptr || count == 0) return;
  rec->length = count < most_payload ? count : most_payload;
  std::memcpy(rec->payload, bytes, rec->length);
}

int msg_send(MsgHandle *handle, MsgRecord *rec) {
  if (handle == nullptr || rec == nullptr) return MSG_ERR_ARGUMENT;
  if (!is_open(handle)) return MSG_ERR_CLOSED;
  return send_record(handle, rec, false, 0);
}

int msg_sendComfirm(MsgHandle *handle, MsgRecord *rec) {
  if (handle == nullptr || rec == nullptr) return MSG_ERR_ARGUMENT;
  if (!is_open(handle)) return MSG_ERR_CLOSED;

  // Two confirmations within one second carry the same cookie; each has its own connection, so none is
  // mistaken.
  const std::time_t now = std::time(nullptr);
  std::srand(static_cast<unsigned int>(now)); // NOLINT(cert-msc51-cpp): the cookie pairs, it does not protect
  const uint32_t cookie =
      static_cast<uint32_t>(std::rand()) + static_cast<uint32_t>(now); // NOLINT(cert-msc50-cpp)
  if (const int result = send_record(handle, rec, true, cookie); result != 0) return result;

  if (!wait_readable(handle->fd, confirm_seconds)) return MSG_ERR_NO_CONFIRM;
  MsgRecord reply = {};
  if (recv(handle->fd, &reply, header_size, 0) < 1) return MSG_ERR_RECEIVE;
  if (reply.command != confirmation || reply.cookie != cookie) return MSG_ERR_WRONG_CONFIRM;
  return static_cast<int>(reply.wordData);
}

int msg_receive(MsgHandle *handle, void *buf, int size) {
  if (handle == nullptr || buf == nullptr || size < static_cast<int>(header_size)) return MSG_ERR_ARGUMENT;
  if (!is_open(handle)) return MSG_ERR_CLOSED;

  const kova::OwnedText memory(static_cast<char *>(std::calloc(1, receive_area)));
  char *area = memory.writable();
  if (area == nullptr) return MSG_ERR_RECEIVE; // and nothing is taken from the socket
  const auto *rec = reinterpret_cast<const MsgRecord *>(area);
  const ssize_t header = recv(handle->fd, area, header_size, 0);
  if (header < 0) return MSG_ERR_RECEIVE;
  if (header == 0) return MSG_ERR_PEER_CLOSED;
  if (header != static_cast<ssize_t>(header_size)) return MSG_ERR_SHORT_HEADER;

  // A record may be sent with 2048 bytes of payload, but received only with what the area has room for: what
  // is longer stays in the socket.
  ssize_t payload = 0;
  if (rec->length != 0 && rec->length <= receive_area - header_size) {
    payload = recv(handle->fd, area + header_size, rec->length, 0);
    if (payload < 0) return MSG_ERR_RECEIVE;
    if (payload == 0) return MSG_ERR_PEER_CLOSED;
  }
  if (rec->destinationType != handle->clientType) return MSG_ERR_NOT_FOR_US;

  const auto wanted = static_cast<std::size_t>(size);
  std::memcpy(buf, area, wanted < receive_area ? wanted : receive_area);
  return static_cast<int>(header + payload);
}

int msg_receiveWithTimeout(MsgHandle *handle, void *buf, int size, int seconds) {
  if (handle == nullptr || buf == nullptr || size <= 0) return MSG_ERR_ARGUMENT;
  if (!is_open(handle)) return MSG_ERR_CLOSED;
  if (!wait_readable(handle->fd, seconds < 1 ? confirm_seconds : seconds)) return MSG_ERR_TIMEOUT;
  return msg_receive(handle, buf, size);
}
