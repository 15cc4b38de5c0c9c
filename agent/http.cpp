#include "agent/http.hpp"

#include <kova.h>
#include <sys/stat.h>

#include <stdexcept>

namespace kova::agent {
namespace {

constexpr long connect_seconds = 20, most_redirects = 5;
constexpr std::size_t most_answer_bytes = std::size_t{4} << 20;

// What may go wrong in it is memory alone.
template <typename Value>
void set(CURL *handle, CURLoption option, Value value) {
  if (curl_easy_setopt(handle, option, value) != CURLE_OK)
    throw std::runtime_error("libcurl refuses an option");
}

// A server that sends without end must not fill the memory, nor what it has compressed a thousandfold.
std::size_t append_bounded(char *data, std::size_t size, std::size_t count, void *destination) {
  auto &text = *static_cast<std::string *>(destination);
  if (text.size() + size * count > most_answer_bytes) return 0;
  text.append(data, size * count);
  return size * count;
}

std::size_t read_file(char *data, std::size_t size, std::size_t count, void *file) {
  return std::fread(data, size, count, static_cast<FILE *>(file));
}

void prepare(CURL *handle, const Server &server, const char *protocols) {
  set(handle, CURLOPT_URL, server.url.c_str());
  set(handle, CURLOPT_PROTOCOLS_STR, protocols);
  // From an encrypted connection there is no way back to a plain one.
  set(handle, CURLOPT_REDIR_PROTOCOLS_STR, server.url.starts_with("https:") ? "https" : "http,https");
  set(handle, CURLOPT_FOLLOWLOCATION, 1L);
  set(handle, CURLOPT_MAXREDIRS, most_redirects);
  set(handle, CURLOPT_POSTREDIR, long{CURL_REDIR_POST_ALL});
  set(handle, CURLOPT_NOSIGNAL, 1L);
  set(handle, CURLOPT_PROXY, ""); // the device's traffic, not that of the person who runs it
  set(handle, CURLOPT_CONNECTTIMEOUT, connect_seconds);
  set(handle, CURLOPT_USERAGENT, "kova-cwmpd/" KOVA_VERSION);
  if (!server.username.empty()) {
    set(handle, CURLOPT_HTTPAUTH, long{CURLAUTH_BASIC | CURLAUTH_DIGEST});
    set(handle, CURLOPT_USERNAME, server.username.c_str());
    set(handle, CURLOPT_PASSWORD, server.password.c_str());
  }
  if (!server.tls.ca.empty()) set(handle, CURLOPT_CAINFO, server.tls.ca.c_str());
  if (server.tls.certificate.empty()) return;
  set(handle, CURLOPT_SSLCERT, server.tls.certificate.c_str());
  set(handle, CURLOPT_SSLKEY, (server.tls.key.empty() ? server.tls.certificate : server.tls.key).c_str());
}

long retry_after(CURL *handle) {
  curl_off_t seconds = 0;
  curl_easy_getinfo(handle, CURLINFO_RETRY_AFTER, &seconds);
  return static_cast<long>(seconds);
}

struct FileCloser {
  void operator()(FILE *file) const { std::fclose(file); }
};
using File = std::unique_ptr<FILE, FileCloser>;

File open_file(const std::filesystem::path &path, const char *mode) {
  File file(std::fopen(path.c_str(), mode));
  if (!file)
    throw request::Fault{"", request::FaultCode::InternalError, "cannot open " + path.filename().string()};
  return file;
}

request::FaultCode transfer_fault(CURLcode result, long status, request::FaultCode otherwise) {
  using enum request::FaultCode;
  switch (result) {
  case CURLE_COULDNT_RESOLVE_HOST:
  case CURLE_COULDNT_CONNECT:
    return ServerNotContacted;
  case CURLE_UNSUPPORTED_PROTOCOL:
    return UnsupportedTransferProtocol;
  case CURLE_LOGIN_DENIED:
  case CURLE_PEER_FAILED_VERIFICATION:
    return ServerAuthenticationFailure;
  case CURLE_PARTIAL_FILE:
  case CURLE_OPERATION_TIMEDOUT:
  case CURLE_RECV_ERROR:
  case CURLE_GOT_NOTHING:
    return otherwise == TransferFailure ? DownloadIncomplete : otherwise;
  case CURLE_HTTP_RETURNED_ERROR:
  case CURLE_REMOTE_FILE_NOT_FOUND:
    return status == 401 || status == 403 ? ServerAuthenticationFailure
           : otherwise == TransferFailure ? FileNotAccessed
                                          : otherwise;
  default:
    return otherwise;
  }
}

void transfer(CURL *handle, request::FaultCode otherwise) {
  constexpr long stalled_seconds = 30;
  set(handle, CURLOPT_FAILONERROR, 1L);
  set(handle, CURLOPT_LOW_SPEED_LIMIT, 1L);
  set(handle, CURLOPT_LOW_SPEED_TIME, stalled_seconds);
  const CURLcode result = curl_easy_perform(handle);
  if (result == CURLE_OK) return;
  long status = 0;
  curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &status);
  throw request::Fault{"", transfer_fault(result, status, otherwise),
                       status >= 300 ? "the server answers " + std::to_string(status)
                                     : curl_easy_strerror(result)};
}

using Handle = std::unique_ptr<CURL, decltype(&curl_easy_cleanup)>;

} // namespace

Connection::Connection(const Server &server, long exchange_seconds) : handle_(curl_easy_init()) {
  CURL *handle = handle_.get();
  prepare(handle, server, "http,https");
  set(handle, CURLOPT_UNRESTRICTED_AUTH, 1L); // the session goes on where the ACS redirects it
  set(handle, CURLOPT_TIMEOUT, exchange_seconds);
  set(handle, CURLOPT_COOKIEFILE, "");
  set(handle, CURLOPT_ACCEPT_ENCODING, "gzip");
  set(handle, CURLOPT_WRITEFUNCTION, append_bounded);
}

std::string Connection::post(const std::string &body) {
  CURL *handle = handle_.get();
  std::string answer;
  set(handle, CURLOPT_WRITEDATA, &answer);
  set(handle, CURLOPT_POST, 1L);
  set(handle, CURLOPT_POSTFIELDS, body.c_str());
  set(handle, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
  struct curl_slist *lines = curl_slist_append(nullptr, "Expect:");
  lines =
      curl_slist_append(lines, body.empty() ? "Content-Type:" : "Content-Type: text/xml; charset=\"utf-8\"");
  if (!body.empty()) lines = curl_slist_append(lines, "SOAPAction;"); // present, and empty
  const std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headers(lines, curl_slist_free_all);
  set(handle, CURLOPT_HTTPHEADER, headers.get());
  const CURLcode result = curl_easy_perform(handle);
  if (result == CURLE_WRITE_ERROR && answer.size() > most_answer_bytes / 2)
    throw HttpError("the answer of the management server is too long");
  if (result != CURLE_OK) throw HttpError(curl_easy_strerror(result));
  long status = 0;
  curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &status);
  if (status == 401 || status == 407)
    throw HttpError("the management server refuses the device's user or password");
  if (status / 100 != 2)
    throw HttpError("the management server answers " + std::to_string(status), retry_after(handle));
  const char *reached = nullptr;
  curl_easy_getinfo(handle, CURLINFO_EFFECTIVE_URL, &reached);
  if (reached != nullptr) set(handle, CURLOPT_URL, std::string(reached).c_str());
  return answer;
}

HostAndPort host_of(const std::string &url) {
  const std::unique_ptr<CURLU, decltype(&curl_url_cleanup)> parts(curl_url(), curl_url_cleanup);
  curl_url_set(parts.get(), CURLUPART_URL, url.c_str(), 0);
  const auto part = [&parts](CURLUPart which) {
    char *text = nullptr;
    curl_url_get(parts.get(), which, &text, CURLU_DEFAULT_PORT);
    const std::unique_ptr<char, decltype(&curl_free)> owned(text, curl_free);
    return std::string(text == nullptr ? "" : text);
  };
  std::string host = part(CURLUPART_HOST);
  if (host.starts_with('[')) host = host.substr(1, host.size() - 2);
  return {host, part(CURLUPART_PORT)};
}

void download(const Server &server, const std::filesystem::path &path, std::size_t most_bytes) {
  const Handle handle(curl_easy_init(), curl_easy_cleanup);
  const File file = open_file(path, "wb");
  prepare(handle.get(), server, "http,https,ftp");
  set(handle.get(), CURLOPT_WRITEDATA, file.get());
  set(handle.get(), CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(most_bytes));
  // The announced length is checked by libcurl, what comes beyond it or without one here.
  set(handle.get(), CURLOPT_NOPROGRESS, 0L);
  set(handle.get(), CURLOPT_XFERINFODATA, &most_bytes);
  set(
      handle.get(), CURLOPT_XFERINFOFUNCTION,
      +[](void *most, curl_off_t, curl_off_t received, curl_off_t, curl_off_t) -> int {
        return received > static_cast<curl_off_t>(*static_cast<std::size_t *>(most)) ? 1 : 0;
      });
  transfer(handle.get(), request::FaultCode::TransferFailure);
  if (std::fflush(file.get()) != 0)
    throw request::Fault{"", request::FaultCode::InternalError, "the device has no room for the file"};
}

void upload(const Server &server, const std::filesystem::path &path) {
  const Handle handle(curl_easy_init(), curl_easy_cleanup);
  const File file = open_file(path, "rb");
  struct stat about {};
  stat(path.c_str(), &about);
  prepare(handle.get(), server, "http,https,ftp");
  set(handle.get(), CURLOPT_UPLOAD, 1L);
  set(handle.get(), CURLOPT_READFUNCTION, read_file);
  set(handle.get(), CURLOPT_READDATA, file.get());
  // Digest asks twice.
  set(handle.get(), CURLOPT_SEEKDATA, file.get());
  set(
      handle.get(), CURLOPT_SEEKFUNCTION, +[](void *source, curl_off_t offset, int origin) -> int {
        return std::fseek(static_cast<FILE *>(source), static_cast<long>(offset), origin) == 0
                   ? CURL_SEEKFUNC_OK
                   : CURL_SEEKFUNC_FAIL;
      });
  set(handle.get(), CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(about.st_size));
  transfer(handle.get(), request::FaultCode::UploadFailure);
}

} // namespace kova::agent
