// File calls with a path of the device are answered from below its directory. Both spellings of the calls
// with large file offsets are here, since programs use either.
#include "device/redirect/paths.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdbool.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

// Of the host platform, where the program uses it: what the radio has carried in the last seconds.
__attribute__((weak)) int kova_open_rates(void);

// The rate sampler's file is computed, unless the device has one.
static int or_rates(int file, const char *path) {
  if (file >= 0 || errno != ENOENT || strcmp(path, "/var/rate_info") != 0 || kova_open_rates == NULL)
    return file;
  file = kova_open_rates();
  if (file < 0) errno = ENOENT;
  return file;
}

static bool creates(int flags) {
  return (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
}

#define OPEN(name, parameters, ...)                                                                          \
  int name parameters {                                                                                      \
    mode_t mode = 0;                                                                                         \
    if (creates(flags)) {                                                                                    \
      va_list rest;                                                                                          \
      va_start(rest, flags);                                                                                 \
      mode = va_arg(rest, mode_t);                                                                           \
      va_end(rest);                                                                                          \
    }                                                                                                        \
    char room[DEVICE_PATH_ROOM];                                                                             \
    return or_rates(NEXT(name)(__VA_ARGS__, mode), path);                                                    \
  }

#define CALL(type, name, parameters, ...)                                                                    \
  type name parameters {                                                                                     \
    char room[DEVICE_PATH_ROOM];                                                                             \
    return NEXT(name)(__VA_ARGS__);                                                                          \
  }

#define RENAME(name, parameters, ...)                                                                        \
  int name parameters {                                                                                      \
    char room[DEVICE_PATH_ROOM], to_room[DEVICE_PATH_ROOM];                                                  \
    return NEXT(name)(__VA_ARGS__);                                                                          \
  }

#define PATH device_path(path, room)

// Where a program is compiled with buffer checks, an open without a mode goes by these names.
int __open_2(const char *path, int flags);
int __open64_2(const char *path, int flags);
int __openat_2(int at, const char *path, int flags);
int __openat64_2(int at, const char *path, int flags);

// clang-format off
// NOLINTBEGIN(clang-analyzer-valist.Uninitialized): not seen to be started when several files are checked in
// one run
OPEN(open,     (const char *path, int flags, ...),         PATH, flags)
OPEN(open64,   (const char *path, int flags, ...),         PATH, flags)
OPEN(openat,   (int at, const char *path, int flags, ...), at, PATH, flags)
OPEN(openat64, (int at, const char *path, int flags, ...), at, PATH, flags)
// NOLINTEND(clang-analyzer-valist.Uninitialized)
CALL(int, __open_2,     (const char *path, int flags),         PATH, flags)
CALL(int, __open64_2,   (const char *path, int flags),         PATH, flags)
CALL(int, __openat_2,   (int at, const char *path, int flags), at, PATH, flags)
CALL(int, __openat64_2, (int at, const char *path, int flags), at, PATH, flags)
CALL(int, creat,   (const char *path, mode_t mode), PATH, mode)
CALL(int, creat64, (const char *path, mode_t mode), PATH, mode)

CALL(FILE *, fopen,     (const char *path, const char *mode),               PATH, mode)
CALL(FILE *, fopen64,   (const char *path, const char *mode),               PATH, mode)
CALL(FILE *, freopen,   (const char *path, const char *mode, FILE *stream), PATH, mode, stream)
CALL(FILE *, freopen64, (const char *path, const char *mode, FILE *stream), PATH, mode, stream)
CALL(DIR *,  opendir,   (const char *path),                                 PATH)

CALL(int, stat,      (const char *path, struct stat *out),                      PATH, out)
CALL(int, stat64,    (const char *path, struct stat64 *out),                    PATH, out)
CALL(int, lstat,     (const char *path, struct stat *out),                      PATH, out)
CALL(int, lstat64,   (const char *path, struct stat64 *out),                    PATH, out)
CALL(int, fstatat,   (int at, const char *path, struct stat *out, int flags),   at, PATH, out, flags)
CALL(int, fstatat64, (int at, const char *path, struct stat64 *out, int flags), at, PATH, out, flags)
CALL(int, statx,     (int at, const char *path, int flags, unsigned mask, struct statx *out),
                     at, PATH, flags, mask, out)
CALL(int, access,    (const char *path, int mode),                      PATH, mode)
CALL(int, faccessat, (int at, const char *path, int mode, int flags),   at, PATH, mode, flags)
CALL(int, eaccess,   (const char *path, int mode),                      PATH, mode)
CALL(int, euidaccess, (const char *path, int mode),                     PATH, mode)

CALL(int, unlink,   (const char *path),                                 PATH)
CALL(int, unlinkat, (int at, const char *path, int flags),              at, PATH, flags)
CALL(int, remove,   (const char *path),                                 PATH)
CALL(int, mkdir,    (const char *path, mode_t mode),                    PATH, mode)
CALL(int, mkdirat,  (int at, const char *path, mode_t mode),            at, PATH, mode)
CALL(int, rmdir,    (const char *path),                                 PATH)
CALL(int, chmod,    (const char *path, mode_t mode),                    PATH, mode)
CALL(int, fchmodat, (int at, const char *path, mode_t mode, int flags), at, PATH, mode, flags)
CALL(int, truncate, (const char *path, off_t length),                   PATH, length)
CALL(int, utimensat, (int at, const char *path, const struct timespec times[2], int flags), at, PATH, times, flags)

RENAME(rename,    (const char *path, const char *to),                   PATH, device_path(to, to_room))
RENAME(renameat,  (int at, const char *path, int to_at, const char *to), at, PATH, to_at, device_path(to, to_room))
RENAME(renameat2, (int at, const char *path, int to_at, const char *to, unsigned flags),
                  at, PATH, to_at, device_path(to, to_room), flags)
// clang-format on
