/* Which absolute paths belong to the device, and where they lie below its directory.
 *
 * This library is preloaded into foreign programs and runs between vfork and exec: it allocates nothing on
 * these paths, keeps no state that a call changes, and needs nothing but libc. */
#ifndef DEVICE_REDIRECT_PATHS_H
#define DEVICE_REDIRECT_PATHS_H

#include <limits.h>
#include <stdatomic.h>

#pragma GCC visibility push(hidden)

/* One more than the kernel takes, so that a path that became too long reaches it and is refused there. */
enum { DEVICE_PATH_ROOM = PATH_MAX + 1 };

/* Writes the device's directory ($KOVA_DEVICE, made absolute) and returns room; NULL without a device. */
const char *device_directory(char room[DEVICE_PATH_ROOM]);
/* The path to use in place of path: below the device's root for a path of the device, else path itself. */
const char *device_path(const char *path, char room[DEVICE_PATH_ROOM]);

typedef void AnyFunction(void);
AnyFunction *next_function(_Atomic(AnyFunction *) *known, const char *name);

#pragma GCC visibility pop

/* The definition of a libc function that follows this library's: libc's own, or a sanitizer's in between. */
#define NEXT(name)                                                                                           \
  __extension__({                                                                                            \
    static _Atomic(AnyFunction *) known;                                                                     \
    (__typeof__(name) *)next_function(&known, #name);                                                        \
  })

#endif
