#include "device/diag/transfer.hpp"

#include "device/date_time.hpp"
#include "device/diag/failure.hpp"
#include "device/diag/host.hpp"
#include "platform/nvram.h"

#include <arpa/inet.h>
#include <curl/curl.h>
#include <ifaddrs.h>
#include <netinet/in.h>
#include <strings.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

namespace kova::diag {
namespace {

constexpr long connect_seconds = 30, silent_seconds = 30;

// Counters of the platform.
enum class Counter { sent_bytes = 2, received_bytes = 10 };

std::string interface_of(const char *address) {
  ifaddrs *all = nullptr;
  if (getifaddrs(&all) != 0) return "";
  const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> owner(all, freeifaddrs);
  for (const ifaddrs *one = all; one != nullptr; one = one->ifa_next) {
    if (one->ifa_addr == nullptr) continue;
    const int family = one->ifa_addr->sa_family;
    const void *number = nullptr;
    if (family == AF_INET) number = &reinterpret_cast<const sockaddr_in *>(one->ifa_addr)->sin_addr;
    if (family == AF_INET6) number = &reinterpret_cast<const sockaddr_in6 *>(one->ifa_addr)->sin6_addr;
    std::array<char, INET6_ADDRSTRLEN> text{};
    if (number != nullptr && inet_ntop(family, number, text.data(), text.size()) != nullptr &&
        std::strcmp(text.data(), address) == 0)
      return one->ifa_name;
  }
  return "";
}

// One request and its answer, watched.
class Transfer {
public:
  Transfer(const Options &options, Counter counter) : options_(options), counter_(counter) {
    expect_interface(options.interface);
    if (strncasecmp(options.url.c_str(), "http://", 7) != 0)
      throw Failure(state::other, "not an HTTP address: " + options.url);
    set(CURLOPT_ERRORBUFFER, reason_.data());
    set(CURLOPT_URL, options.url.c_str());
    set(CURLOPT_PROTOCOLS_STR, "http");
    set(CURLOPT_PROXY, ""); // the device has none, whatever the host's environment says
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_CONNECTTIMEOUT, connect_seconds);
    set(CURLOPT_LOW_SPEED_LIMIT, 1L);
    set(CURLOPT_LOW_SPEED_TIME, silent_seconds);
    if (!options.interface.empty()) set(CURLOPT_INTERFACE, ("if!" + options.interface).c_str());
    set(CURLOPT_SOCKOPTFUNCTION, &Transfer::on_socket);
    set(CURLOPT_SOCKOPTDATA, this);
    set(CURLOPT_PREREQFUNCTION, &Transfer::on_connected);
    set(CURLOPT_PREREQDATA, this);
    set(CURLOPT_WRITEFUNCTION, &Transfer::on_body);
    set(CURLOPT_VERBOSE, 1L);
    set(CURLOPT_DEBUGFUNCTION, &Transfer::on_traffic);
    set(CURLOPT_DEBUGDATA, this);
  }

  template <typename Value>
  void set(CURLoption option, Value value) {
    const CURLcode failed = curl_easy_setopt(curl_.get(), option, value);
    if (failed != CURLE_OK) throw Failure(state::internal, curl_easy_strerror(failed));
  }

  // Throws Failure unless the server answers that all is well.
  void run() {
    const CURLcode result = curl_easy_perform(curl_.get());
    if (result != CURLE_OK)
      throw Failure(state_of(result), reason_[0] != '\0' ? reason_.data() : curl_easy_strerror(result));
    long answer = 0;
    curl_easy_getinfo(curl_.get(), CURLINFO_RESPONSE_CODE, &answer);
    if (answer / 100 == 2) return;
    const bool not_let_in = answer == 401 || answer == 407;
    throw Failure(not_let_in ? state::login_failed : state::transfer_failed,
                  "the server answers " + std::to_string(answer));
  }

  timespec asked{}, connected{}, request_sent{}, data_sent{}, first_received{}, last_received{};
  uint64_t bytes_sent = 0, bytes_received = 0;

  // What the interface counted since the connection stood: all its traffic, of which the test's is a part.
  uint64_t interface_bytes(uint64_t own) const {
    const long long now = count();
    return now < 0 || counted_before_ < 0 ? own : std::max(own, static_cast<uint64_t>(now - counted_before_));
  }

private:
  long long count() const {
    return interface_.empty() ? -1 : tarn_get_if_statistic(interface_.c_str(), static_cast<int>(counter_));
  }

  static int on_socket(Transfer *self, curl_socket_t socket, curlsocktype /*purpose*/) {
    int family = 0;
    socklen_t length = sizeof family;
    getsockopt(socket, SOL_SOCKET, SO_DOMAIN, &family, &length);
    const int traffic_class = static_cast<int>(self->options_.dscp << 2);
    const int failed =
        family == AF_INET6
            ? setsockopt(socket, IPPROTO_IPV6, IPV6_TCLASS, &traffic_class, sizeof traffic_class)
            : setsockopt(socket, IPPROTO_IP, IP_TOS, &traffic_class, sizeof traffic_class);
    self->asked = device::now();
    return failed == 0 ? CURL_SOCKOPT_OK : CURL_SOCKOPT_ERROR;
  }

  static int on_connected(Transfer *self, char * /*server*/, char *own_address, int /*port*/,
                          int /*own_port*/) {
    self->connected = device::now();
    self->interface_ =
        self->options_.interface.empty() ? interface_of(own_address) : self->options_.interface;
    self->counted_before_ = self->count();
    return CURL_PREREQFUNC_OK;
  }

  static size_t on_body(const char * /*bytes*/, size_t size, size_t count, void * /*none*/) {
    return size * count;
  }

  static int on_traffic(CURL * /*curl*/, curl_infotype type, const char * /*bytes*/, size_t count,
                        Transfer *self) {
    const timespec time = device::now();
    const auto note_first = [&time](timespec &first) {
      if (first.tv_sec == 0) first = time;
    };
    if (type == CURLINFO_HEADER_OUT) note_first(self->request_sent);
    if (type == CURLINFO_DATA_OUT) note_first(self->data_sent);
    if (type == CURLINFO_HEADER_OUT || type == CURLINFO_DATA_OUT) self->bytes_sent += count;
    if (type == CURLINFO_HEADER_IN || type == CURLINFO_DATA_IN) {
      note_first(self->first_received);
      self->last_received = time;
      self->bytes_received += count;
    }
    return 0;
  }

  const char *state_of(CURLcode failure) const {
    switch (failure) {
    case CURLE_COULDNT_RESOLVE_HOST:
      return state::cannot_resolve;
    case CURLE_COULDNT_CONNECT:
      return state::no_connection;
    case CURLE_OPERATION_TIMEDOUT:
      if (connected.tv_sec == 0) return state::no_connection;
      return bytes_received == 0 ? state::no_response : state::timeout;
    case CURLE_GOT_NOTHING:
      return state::no_response;
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
      return bytes_received == 0 ? state::no_response : state::transfer_failed;
    case CURLE_PARTIAL_FILE:
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_UNSUPPORTED_PROTOCOL: // what the server speaks is not HTTP; the address was looked at before
      return state::transfer_failed;
    case CURLE_INTERFACE_FAILED:
    case CURLE_OUT_OF_MEMORY:
    case CURLE_FAILED_INIT:
      return state::internal;
    default:
      return state::other;
    }
  }

  const Options &options_;
  Counter counter_;
  std::string interface_;
  long long counted_before_ = -1;
  std::array<char, CURL_ERROR_SIZE> reason_{};
  std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> curl_{curl_easy_init(), curl_easy_cleanup};
};

Results connection_times(const Transfer &transfer) {
  return {{"TCPREQTIME", time_text(transfer.asked)},
          {"TCPRESTIME", time_text(transfer.connected)},
          {"RTIME", time_text(transfer.request_sent)}};
}

// What is sent holds no meaning. left: bytes still to be sent.
size_t fill(char *room, size_t size, size_t count, unsigned long *left) {
  const size_t filled = std::min<unsigned long>(size * count, *left);
  std::memset(room, 'k', filled);
  *left -= filled;
  return filled;
}

} // namespace

Results download(const Options &options) {
  Transfer transfer(options, Counter::received_bytes);
  transfer.run();
  Results results = connection_times(transfer);
  results.emplace_back("BTIME", time_text(transfer.first_received));
  results.emplace_back("ETIME", time_text(transfer.last_received));
  results.emplace_back("TESTRCVD", std::to_string(transfer.bytes_received));
  results.emplace_back("TOTALRCVD", std::to_string(transfer.interface_bytes(transfer.bytes_received)));
  return results;
}

Results upload(const Options &options) {
  Transfer transfer(options, Counter::sent_bytes);
  unsigned long left = options.length;
  // Sent at once: the server is not asked first whether it wants it.
  const std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headers(
      curl_slist_append(nullptr, "Expect:"), curl_slist_free_all);
  transfer.set(CURLOPT_UPLOAD, 1L);
  transfer.set(CURLOPT_HTTPHEADER, headers.get());
  transfer.set(CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(options.length));
  transfer.set(CURLOPT_READFUNCTION, &fill);
  transfer.set(CURLOPT_READDATA, &left);
  transfer.run();
  Results results = connection_times(transfer);
  results.emplace_back("BTIME", time_text(transfer.data_sent));
  results.emplace_back("ETIME", time_text(transfer.last_received));
  results.emplace_back("TOTALSENT", std::to_string(transfer.interface_bytes(transfer.bytes_sent)));
  return results;
}

} // namespace kova::diag
