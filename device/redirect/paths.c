#include "device/redirect/paths.h"

#include <dlfcn.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

// Exact names, but for the marks at the end: "*" stands for any rest, "/" for a directory and all below it.
static const char *const device_paths[] = {
    "/tmp/mrhd_socket",
    "/tmp/tr069_*",
    "/tmp/voip-*",
    "/tmp/udpEchoServerStatistics",
    "/tmp/sec_udpEchoServerStatistics",
    "/tmp/tracerouteResults*",
    "/tmp/sec_tracerouteResults*",
    "/tmp/M4412_Log.dat",
    "/var/rate_info",
    "/var/log/.backup_settings",
    "/var/config/",
    "/etc/sysconfig/",
    "/home/www/cgi-bin/maintenance.cgi",
    "/proc/net/arp",
    "/proc/wlan0*",
    "/usr/bin/test_cpeevent",
    "/bin/download_diag",
    "/bin/sec_download_diag",
    "/bin/upload_diag",
    "/bin/sec_upload_diag",
    "/bin/udpechoplus_server",
    "/bin/sec_udpechoplus_server",
    "/bin/ping_diag",
    "/bin/sec_ping_diag",
    "/bin/traceroute_diag",
    "/bin/sec_traceroute_diag",
};

static bool matches(const char *path, const char *pattern) {
  const size_t length = strlen(pattern);
  const char last = pattern[length - 1];
  if (last == '*') return strncmp(path, pattern, length - 1) == 0;
  if (last != '/') return strcmp(path, pattern) == 0;
  return strncmp(path, pattern, length - 1) == 0 && (path[length - 1] == '/' || path[length - 1] == '\0');
}

static bool climbs(const char *path) {
  for (const char *at = strstr(path, "/.."); at != NULL; at = strstr(at + 1, "/.."))
    if (at[3] == '/' || at[3] == '\0') return true;
  return false;
}

static bool belongs_to_device(const char *path) {
  for (size_t i = 0; i < sizeof device_paths / sizeof *device_paths; i++)
    if (matches(path, device_paths[i])) return !climbs(path);
  return false;
}

const char *device_directory(char room[DEVICE_PATH_ROOM]) {
  const char *directory = getenv("KOVA_DEVICE");
  if (directory == NULL || *directory == '\0') return NULL;
  size_t used = 0;
  if (*directory != '/') {
    if (getcwd(room, PATH_MAX) == NULL) return NULL;
    used = strlen(room);
    room[used++] = '/';
  }
  snprintf(room + used, DEVICE_PATH_ROOM - used, "%s", directory);
  return room;
}

const char *device_path(const char *path, char room[DEVICE_PATH_ROOM]) {
  if (path == NULL || *path != '/' || !belongs_to_device(path)) return path;
  if (device_directory(room) == NULL) return path;
  const size_t used = strlen(room);
  snprintf(room + used, DEVICE_PATH_ROOM - used, "/root%s", path);
  return room;
}

AnyFunction *next_function(_Atomic(AnyFunction *) *known, const char *name) {
  AnyFunction *function = atomic_load_explicit(known, memory_order_relaxed);
  if (function != NULL) return function;
  *(void **)&function = dlsym(RTLD_NEXT, name);
  if (function == NULL) abort(); // whoever calls it was linked with a libc that has it
  atomic_store_explicit(known, function, memory_order_relaxed);
  return function;
}
