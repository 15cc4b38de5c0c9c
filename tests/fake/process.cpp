// The libc calls through which the library reaches the device's files, commands and daemon: defined here, ahead of libc.
#include "fake.hpp"

#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysinfo.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <map>

using fake::platform;

namespace {

// libc's own function
#define LIBC(name) (reinterpret_cast<decltype(&(name))>(dlsym(RTLD_NEXT, #name)))

constexpr const char *daemon_socket = "/tmp/mrhd_socket";

// Paths of the device: what is not scripted does not exist.
bool is_device_path(const std::string &path) {
  for (const char *prefix : {"/proc/net/", "/proc/wlan0", "/var/", "/tmp/tr069_", "/tmp/udpEcho",
                             "/tmp/sec_udpEcho", "/tmp/voip-"})
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

// A stream that keeps what is written to a device path.
FILE *writer_to(const char *path) {
  platform.files[path].clear();
  const auto write = [](void *cookie, const char *data, std::size_t size) {
    platform.files[*static_cast<std::string *>(cookie)].append(data, size);
    return static_cast<ssize_t>(size);
  };
  const auto close = [](void *cookie) {
    delete static_cast<std::string *>(cookie);
    return 0;
  };
  return fopencookie(new std::string(path), "w", {nullptr, write, nullptr, close});
}

// A descriptor of a scripted device file; -1 when there is none.
int open_device_file(const char *path, int flags) {
  const std::string *text = platform.scripted(platform.files, std::string(path));
  errno = ENOENT;
  if (text == nullptr || !platform.files_open) return -1;
  const auto special = platform.special_files.find(path);
  const char kind = special == platform.special_files.end() ? 'f' : special->second;
  if (kind == 'd') return LIBC(open)("/", flags);
  if (kind == 'p') {
    EXPECT_TRUE(flags & O_NONBLOCK) << "could wait for ever";
    int ends[2];
    if (pipe(ends) != 0) return -1;
    EXPECT_GE(write(ends[1], text->data(), text->size()), 0);
    close(ends[1]);
    return ends[0];
  }
  FILE *stream = stream_of(*text);
  const int fd = dup(fileno(stream));
  std::fclose(stream);
  return fd;
}

std::map<int, bool> daemon_connections; // by descriptor: has the client announced itself?

} // namespace

extern "C" {

int system(const char *command) {
  fake::did(std::string("run ") + command);
  return platform.exit_status << 8;
}

FILE *popen(const char *command, const char *mode) {
  EXPECT_STREQ(mode, "r") << command;
  platform.piped.push_back(command);
  platform.calls.push_back(std::string("pipe ") + command);
  const std::string *output = platform.scripted(platform.output, std::string(command));
  return output == nullptr ? nullptr : stream_of(*output);
}

int pclose(FILE *stream) {
  return std::fclose(stream);
}

unsigned int sleep(unsigned int seconds) {
  if (gettid() != getpid()) return LIBC(sleep)(seconds); // not the library's thread
  fake::did("sleep " + std::to_string(seconds));
  return 0;
}

FILE *fopen(const char *path, const char *mode) {
  if (is_device_path(path) && !platform.files_open) return nullptr;
  if (is_device_path(path) && *mode == 'w') return writer_to(path);
  if (!is_device_path(path) && !platform.files.contains(path)) return LIBC(fopen)(path, mode);
  const std::string *text = platform.scripted(platform.files, std::string(path));
  errno = ENOENT;
  return text == nullptr ? nullptr : stream_of(*text);
}

int stat(const char *path, struct stat *facts) noexcept {
  errno = ENOENT;
  if (std::strcmp(path, daemon_socket) == 0) return platform.daemon ? 0 : -1;
  return platform.executable ? LIBC(stat)(path, facts) : -1;
}

int open(const char *path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const auto mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return is_device_path(path) ? open_device_file(path, flags) : LIBC(open)(path, flags, mode);
}

int access(const char *path, int mode) noexcept {
  if (!is_device_path(path)) return LIBC(access)(path, mode);
  return platform.scripted(platform.files, std::string(path)) != nullptr ? 0 : -1;
}

int flock(int, int operation) noexcept {
  const bool at_once = (operation & LOCK_NB) != 0;
  platform.locks.push_back((operation & ~LOCK_NB) == LOCK_UN ? "unlock"
                           : at_once                         ? "exclusive at once"
                                                             : "exclusive");
  return platform.lockable && !(at_once && platform.locked_by_another) ? 0 : -1;
}

int sysinfo(struct sysinfo *facts) noexcept {
  if (!platform.knows_memory_and_uptime) return -1;
  *facts = {};
  facts->uptime = platform.uptime;
  facts->totalram = platform.total_ram;
  facts->freeram = platform.free_ram;
  facts->mem_unit = 4096;
  return 0;
}

int clock_gettime(clockid_t clock, timespec *now) noexcept {
  return platform.clock_is_readable ? LIBC(clock_gettime)(clock, now) : -1;
}

time_t mktime(tm *date) noexcept {
  constexpr int last_year = 2037 - 1900;
  return platform.clock_ends_in_2038 && date->tm_year > last_year ? -1 : LIBC(mktime)(date);
}

time_t time(time_t *into) noexcept {
  timespec now;
  clock_gettime(CLOCK_REALTIME, &now);
  const time_t seconds = platform.now.value_or(now.tv_sec);
  if (into != nullptr) *into = seconds;
  return seconds;
}

char *strtok_r(char *text, const char *separators, char **rest) noexcept {
  if (!platform.tokens_end_in_null) return LIBC(strtok_r)(text, separators, rest);
  if (text == nullptr && *rest == nullptr) return nullptr;
  if (--platform.tokens_left < 0) return nullptr;
  char *token = LIBC(strtok_r)(text, separators, rest);
  if (token == nullptr || **rest == '\0') *rest = nullptr;
  return token;
}

int socket(int domain, int type, int protocol) noexcept {
  errno = EMFILE;
  return platform.sockets ? LIBC(socket)(domain, type, protocol) : -1;
}

int fcntl(int fd, int command, ...) {
  va_list arguments;
  va_start(arguments, command);
  void *argument = va_arg(arguments, void *);
  va_end(arguments);
  if (command == F_SETFD && !platform.close_on_exec) return -1;
  return LIBC(fcntl)(fd, command, argument);
}

int poll(pollfd *descriptors, nfds_t count, int milliseconds) {
  if (platform.wait) return platform.wait(milliseconds);
  return LIBC(poll)(descriptors, count, milliseconds);
}

int connect(int fd, const sockaddr *address, socklen_t length) {
  const auto *local = reinterpret_cast<const sockaddr_un *>(address);
  if (address->sa_family != AF_UNIX || std::strcmp(local->sun_path, daemon_socket) != 0)
    return LIBC(connect)(fd, address, length);
  EXPECT_EQ(length, 110U);
  if (!platform.daemon_accepts) return -1;
  daemon_connections[fd] = false;
  return 0;
}

ssize_t send(int fd, const void *data, std::size_t size, int flags) {
  if (!daemon_connections.contains(fd)) return LIBC(send)(fd, data, size, flags);
  const auto *record = static_cast<const MsgRecord *>(data);
  EXPECT_EQ(flags, MSG_NOSIGNAL);
  EXPECT_EQ(std::memcmp(&record->magic, "MRHD", 4), 0);
  EXPECT_EQ(record->sourcePid, static_cast<uint32_t>(getpid()));
  EXPECT_EQ(record->sourceType, 2U);
  EXPECT_EQ(record->destinationType, 1U);
  EXPECT_EQ(record->length, size - 36);
  constexpr uint32_t announcement = 0x10000002;
  bool &announced = daemon_connections[fd];
  EXPECT_EQ(record->command == announcement, !announced);
  announced = true;
  if (platform.whole_sends-- <= 0) return static_cast<ssize_t>(size) - 1;
  if (record->command == announcement) {
    EXPECT_EQ(record->confirm | record->cookie | record->wordData | record->length, 0U);
  } else {
    char code[16];
    std::snprintf(code, sizeof code, "0x%x", record->command);
    const std::string payload(reinterpret_cast<const char *>(data) + 36, record->length);
    fake::did(std::string("request ") + code + (payload.empty() ? "" : " " + payload));
  }
  return static_cast<ssize_t>(size);
}

int close(int fd) {
  daemon_connections.erase(fd);
  return LIBC(close)(fd);
}

} // extern "C"
