// The libc calls through which the library reaches the device's files, commands and daemon: defined here, ahead of libc.
#include "fake.hpp"

#include <dlfcn.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <set>

using fake::platform;

namespace {

constexpr const char *daemon_socket = "/tmp/mrhd_socket";

template <typename Function>
Function *libc(const char *name) {
  return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

// Paths of the device: what is not scripted does not exist.
bool is_device_path(const std::string &path) {
  for (const char *prefix :
       {"/proc/net/", "/proc/wlan0", "/var/", "/tmp/tr069_", "/tmp/udpEcho", "/tmp/sec_udpEcho"})
    if (path.rfind(prefix, 0) == 0) return true;
  return false;
}

// Text as a stream that the caller closes.
FILE *stream_of(const std::string &text) {
  FILE *stream = std::tmpfile();
  std::fwrite(text.data(), 1, text.size(), stream);
  std::rewind(stream);
  return stream;
}

std::set<int> daemon_connections;

} // namespace

extern "C" {

int system(const char *command) {
  platform.done.push_back(std::string("run ") + command);
  return 0;
}

FILE *popen(const char *command, const char *) {
  const auto found = platform.output.find(command);
  return found == platform.output.end() ? nullptr : stream_of(found->second);
}

int pclose(FILE *stream) {
  return std::fclose(stream);
}

unsigned int sleep(unsigned int seconds) {
  platform.done.push_back("sleep " + std::to_string(seconds));
  return 0;
}

FILE *fopen(const char *path, const char *mode) {
  const auto found = platform.files.find(path);
  if (found != platform.files.end()) return stream_of(found->second);
  if (is_device_path(path)) {
    errno = ENOENT;
    return nullptr;
  }
  return libc<FILE *(const char *, const char *)>("fopen")(path, mode);
}

int stat(const char *path, struct stat *facts) noexcept {
  if (std::strcmp(path, daemon_socket) != 0)
    return libc<int(const char *, struct stat *)>("stat")(path, facts);
  errno = ENOENT;
  return platform.daemon ? 0 : -1;
}

int connect(int fd, const sockaddr *address, socklen_t length) {
  const auto *local = reinterpret_cast<const sockaddr_un *>(address);
  if (address->sa_family != AF_UNIX || std::strcmp(local->sun_path, daemon_socket) != 0)
    return libc<int(int, const sockaddr *, socklen_t)>("connect")(fd, address, length);
  EXPECT_EQ(length, 110U);
  daemon_connections.insert(fd);
  return 0;
}

ssize_t send(int fd, const void *data, std::size_t size, int flags) {
  if (!daemon_connections.contains(fd))
    return libc<ssize_t(int, const void *, std::size_t, int)>("send")(fd, data, size, flags);
  const auto *record = static_cast<const MsgRecord *>(data);
  EXPECT_EQ(flags, MSG_NOSIGNAL);
  EXPECT_EQ(std::memcmp(&record->magic, "MRHD", 4), 0);
  EXPECT_EQ(record->sourcePid, static_cast<uint32_t>(getpid()));
  EXPECT_EQ(record->sourceType, 2U);
  EXPECT_EQ(record->destinationType, 1U);
  EXPECT_EQ(record->length, size - 36);
  constexpr uint32_t announcement = 0x10000002;
  if (record->command != announcement) {
    char code[16];
    std::snprintf(code, sizeof code, "0x%x", record->command);
    const std::string payload(reinterpret_cast<const char *>(data) + 36, record->length);
    platform.done.push_back(std::string("request ") + code + (payload.empty() ? "" : " " + payload));
  }
  return static_cast<ssize_t>(size);
}

int close(int fd) {
  daemon_connections.erase(fd);
  return libc<int(int)>("close")(fd);
}

} // extern "C"
