// HTTP as a client, over libcurl: a session's exchanges on one connection, and file transfers.
#pragma once

#include "agent/options.hpp"
#include "request/fault.hpp"

#include <curl/curl.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

namespace kova::agent {

struct Server {
  std::string url, username, password;
  TlsFiles tls;
};

// Why an exchange failed, for a person. It carries what the server said of when to come again.
struct HttpError : std::runtime_error {
  explicit HttpError(const std::string &what, long seconds = 0)
      : std::runtime_error(what), retry_after(seconds) {}
  long retry_after; // seconds, 0 when nothing was said
};

// One session's connection: cookies, the authentication that the server wants, and where it has redirected to
// are kept from one exchange to the next.
class Connection {
public:
  Connection(const Server &server, long exchange_seconds);
  // Posts an envelope, or nothing at all; answers the body of the answer. Throws HttpError.
  std::string post(const std::string &body);

private:
  struct Cleanup {
    void operator()(CURL *handle) const { curl_easy_cleanup(handle); }
  };
  std::unique_ptr<CURL, Cleanup> handle_;
};

struct HostAndPort {
  std::string host, port; // an IPv6 address without brackets
};
HostAndPort host_of(const std::string &url);

// Throws request::Fault with the code of the transfer's failure.
void download(const Server &server, const std::filesystem::path &file, std::size_t most_bytes);
void upload(const Server &server, const std::filesystem::path &file);

} // namespace kova::agent
