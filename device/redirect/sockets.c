// Local sockets with a path of the device.
#include "device/redirect/paths.h"

#include <errno.h>
#include <fcntl.h>
#include <stddef.h>
#include <stdio.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

typedef int AddressCall(int fd, const struct sockaddr *address, socklen_t length);

// A socket path has room for about a hundred characters, which a device's directory may well exceed. The
// socket's own directory, held open, gives it a short name.
static int call_by_short_name(AddressCall *call, int fd, const char *path, struct sockaddr_un *address) {
  const char *name = strrchr(path, '/') + 1;
  char directory[DEVICE_PATH_ROOM];
  snprintf(directory, sizeof directory, "%.*s", (int)(name - path), path);
  const int handle = open(directory, O_PATH | O_DIRECTORY | O_CLOEXEC);
  if (handle < 0) return -1;
  snprintf(address->sun_path, sizeof address->sun_path, "/proc/self/fd/%d/%.80s", handle, name);
  const int result = call(fd, (const struct sockaddr *)address, sizeof *address);
  const int error = errno;
  close(handle);
  errno = error;
  return result;
}

// A daemon that hangs takes no connection when enough of them wait for it: nobody waits for that without end.
static void bound_wait(int fd) {
  const struct timeval patience = {.tv_sec = 5};
  struct timeval own = {0};
  socklen_t length = sizeof own;
  if (getsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &own, &length) == 0 && own.tv_sec == 0 && own.tv_usec == 0)
    setsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
}

static int call_on_device(AddressCall *call, int fd, const struct sockaddr *address, socklen_t length) {
  const size_t start = offsetof(struct sockaddr_un, sun_path);
  if (address == NULL || length <= start || address->sa_family != AF_UNIX) return call(fd, address, length);

  struct sockaddr_un own = {.sun_family = AF_UNIX};
  char asked[sizeof own.sun_path + 1] = "";
  const size_t given = length - start;
  memcpy(asked, (const char *)address + start, given < sizeof own.sun_path ? given : sizeof own.sun_path);

  char room[DEVICE_PATH_ROOM];
  const char *path = device_path(asked, room);
  if (path == asked) return call(fd, address, length);
  bound_wait(fd);
  if (strlen(path) >= sizeof own.sun_path) return call_by_short_name(call, fd, path, &own);
  memcpy(own.sun_path, path, strlen(path));
  return call(fd, (const struct sockaddr *)&own, sizeof own);
}

// Under GNU headers the address is declared as any of the kinds of address; a plain pointer is one of them.
__extension__ int connect(int fd, const struct sockaddr *address, socklen_t length) {
  return call_on_device((AddressCall *)NEXT(connect), fd, address, length);
}

__extension__ int bind(int fd, const struct sockaddr *address, socklen_t length) {
  return call_on_device((AddressCall *)NEXT(bind), fd, address, length);
}
