#include "agent/connection_request.hpp"

#include "device/faults.hpp"

#include <microhttpd.h>
#include <sys/random.h>

#include <array>
#include <stdexcept>
#include <string_view>

namespace kova::agent {
namespace {

constexpr const char *realm = "connection request";
constexpr std::size_t most_per_minute = 30;
constexpr unsigned nonce_seconds = 60;

MHD_Result answer(MHD_Connection *connection, unsigned status) {
  MHD_Response *response = MHD_create_response_from_buffer(0, nullptr, MHD_RESPMEM_PERSISTENT);
  if (status == MHD_HTTP_SERVICE_UNAVAILABLE)
    MHD_add_response_header(response, MHD_HTTP_HEADER_RETRY_AFTER, "60");
  if (status == MHD_HTTP_METHOD_NOT_ALLOWED) MHD_add_response_header(response, MHD_HTTP_HEADER_ALLOW, "GET");
  const MHD_Result result = MHD_queue_response(connection, status, response);
  MHD_destroy_response(response);
  return result;
}

MHD_Result challenge(MHD_Connection *connection, bool is_stale) {
  MHD_Response *response = MHD_create_response_from_buffer(0, nullptr, MHD_RESPMEM_PERSISTENT);
  const MHD_Result result = MHD_queue_auth_fail_response2(connection, realm, "kova", response,
                                                          is_stale ? MHD_YES : MHD_NO, MHD_DIGEST_ALG_MD5);
  MHD_destroy_response(response);
  return result;
}

} // namespace

struct ConnectionRequestHandler {
  static MHD_Result serve(void *self, MHD_Connection *connection, const char *url, const char *method,
                          const char *, const char *, size_t *body_size, void **seen) {
    auto &listener = *static_cast<ConnectionRequestListener *>(self);
    if (device::faults().deaf) return MHD_NO;
    if (*seen == nullptr) { // the headers alone; the answer waits for the whole request
      *seen = self;
      return MHD_YES;
    }
    if (*body_size != 0) return MHD_NO;
    if (std::string_view(url) != "/" + listener.path_) return answer(connection, MHD_HTTP_NOT_FOUND);
    if (std::string_view(method) != MHD_HTTP_METHOD_GET)
      return answer(connection, MHD_HTTP_METHOD_NOT_ALLOWED);
    const Credentials wanted = listener.credentials_();
    const int verdict = MHD_digest_auth_check2(connection, realm, wanted.username.c_str(),
                                               wanted.password.c_str(), nonce_seconds, MHD_DIGEST_ALG_MD5);
    if (verdict != MHD_YES || wanted.username.empty())
      return challenge(connection, verdict == MHD_INVALID_NONCE);
    if (listener.throttled()) return answer(connection, MHD_HTTP_SERVICE_UNAVAILABLE);
    listener.accept_();
    return answer(connection, MHD_HTTP_OK);
  }
};

ConnectionRequestListener::ConnectionRequestListener(std::uint16_t port, std::string path, Ask credentials,
                                                     Accept accept)
    : path_(std::move(path)), credentials_(std::move(credentials)), accept_(std::move(accept)) {
  for (const unsigned addresses : {unsigned{MHD_USE_DUAL_STACK}, 0U}) {
    daemon_ =
        MHD_start_daemon(MHD_USE_EPOLL | addresses, port, nullptr, nullptr, ConnectionRequestHandler::serve,
                         this, MHD_OPTION_CONNECTION_LIMIT, 16U, MHD_OPTION_CONNECTION_TIMEOUT, 10U,
                         MHD_OPTION_CONNECTION_MEMORY_LIMIT, size_t{8192}, MHD_OPTION_NONCE_NC_SIZE, 64U,
                         MHD_OPTION_DIGEST_AUTH_RANDOM, seed_.size(), seed_.c_str(), MHD_OPTION_END);
    if (daemon_ != nullptr) return;
  }
  throw std::runtime_error("cannot listen for connection requests on port " + std::to_string(port));
}

ConnectionRequestListener::~ConnectionRequestListener() {
  MHD_stop_daemon(daemon_);
}

std::uint16_t ConnectionRequestListener::port() const {
  return MHD_get_daemon_info(daemon_, MHD_DAEMON_INFO_BIND_PORT)->port;
}

int ConnectionRequestListener::poll_fd() const {
  return MHD_get_daemon_info(daemon_, MHD_DAEMON_INFO_EPOLL_FD)->epoll_fd;
}

void ConnectionRequestListener::serve() {
  MHD_run(daemon_);
}

bool ConnectionRequestListener::throttled() {
  const std::time_t now = std::time(nullptr);
  while (!accepted_.empty() && accepted_.front() + 60 <= now)
    accepted_.pop_front();
  if (accepted_.size() >= most_per_minute) return true;
  accepted_.push_back(now);
  return false;
}

std::string random_digits(std::size_t bytes) {
  constexpr char digits[] = "0123456789abcdef";
  std::string random(bytes, '\0'), text;
  if (getrandom(random.data(), random.size(), 0) != static_cast<ssize_t>(bytes))
    throw std::runtime_error("the kernel gives no random numbers");
  for (const char byte : random) {
    text += digits[static_cast<unsigned char>(byte) >> 4U];
    text += digits[static_cast<unsigned char>(byte) & 0xFU];
  }
  return text;
}

} // namespace kova::agent
