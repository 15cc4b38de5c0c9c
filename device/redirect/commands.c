// Commands. What a shell line of the device runs, sees only the device: its PATH, its environment, and this
// library preloaded, which redirects the paths of the programs in their turn.
#include "device/redirect/paths.h"

#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <pthread.h>
#include <spawn.h>
#include <stdarg.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#define CALL(name, parameters, ...)                                                                          \
  int name parameters {                                                                                      \
    char room[DEVICE_PATH_ROOM];                                                                             \
    return NEXT(name)(__VA_ARGS__);                                                                          \
  }
#define PATH device_path(path, room)

// clang-format off
CALL(execve,  (const char *path, char *const argv[], char *const envp[]), PATH, argv, envp)
CALL(execv,   (const char *path, char *const argv[]),                     PATH, argv)
CALL(execvp,  (const char *path, char *const argv[]),                     PATH, argv)
CALL(execvpe, (const char *path, char *const argv[], char *const envp[]), PATH, argv, envp)
CALL(posix_spawn,
     (pid_t *pid, const char *path, const posix_spawn_file_actions_t *actions, const posix_spawnattr_t *attributes,
      char *const argv[], char *const envp[]),
     pid, PATH, actions, attributes, argv, envp)
CALL(posix_spawnp,
     (pid_t *pid, const char *path, const posix_spawn_file_actions_t *actions, const posix_spawnattr_t *attributes,
      char *const argv[], char *const envp[]),
     pid, PATH, actions, attributes, argv, envp)
// clang-format on

static char own_path[PATH_MAX];

__attribute__((constructor)) static void find_own_path(void) {
  Dl_info info;
  if (dladdr(own_path, &info) == 0 || info.dli_fname == NULL || realpath(info.dli_fname, own_path) == NULL)
    own_path[0] = '\0';
}

enum { ENTRIES = 5, HANDLES = 2 };

typedef struct {
  char *entries[ENTRIES + 1]; // the last is NULL
  int handles[HANDLES];       // on what cannot be named; -1: none
  char **callers;             // the environment to return to
} Environment;

__attribute__((format(printf, 2, 3))) static bool add(Environment *environment, const char *format, ...) {
  size_t used = 0;
  while (environment->entries[used] != NULL)
    used++;
  va_list arguments;
  va_start(arguments, format);
  const int length = vasprintf(&environment->entries[used], format, arguments);
  va_end(arguments);
  if (length < 0) environment->entries[used] = NULL;
  return length >= 0;
}

// A list of paths is split at its separators and knows no quoting. A path that holds one is named through a
// file handle, which the children inherit.
static bool add_path(Environment *environment, const char *name, const char *path, const char *separators,
                     int *inherited) {
  if (strpbrk(path, separators) == NULL) return add(environment, "%s=%s", name, path);
  const int handle = open(path, O_PATH | O_CLOEXEC);
  if (handle < 0) return false;
  *inherited = fcntl(handle, F_DUPFD, 100); // out of the way of the handles that shell scripts use
  close(handle);
  return *inherited >= 0 && add(environment, "%s=/proc/self/fd/%d", name, *inherited);
}

static bool add_programs(Environment *environment, const char *directory) {
  char programs[DEVICE_PATH_ROOM + sizeof "/bin"];
  snprintf(programs, sizeof programs, "%s/bin", directory);
  return add_path(environment, "PATH", programs, ":", &environment->handles[0]) &&
         add_path(environment, "LD_PRELOAD", own_path, " \t\n:", &environment->handles[1]);
}

// The device's stand-ins may be sanitizer builds, which insist on coming before every preloaded library.
static bool add_sanitizer_options(Environment *environment) {
  const char *options = getenv("ASAN_OPTIONS"), *ours = "verify_asan_link_order=0";
  if (options == NULL || *options == '\0') return add(environment, "ASAN_OPTIONS=%s", ours);
  if (strstr(options, ours) != NULL) return add(environment, "ASAN_OPTIONS=%s", options);
  return add(environment, "ASAN_OPTIONS=%s:%s", options, ours);
}

// The stand-ins log who asked: the process that first ran a command of the device, not the shells between.
static bool add_asking_process(Environment *environment) {
  const char *asking = getenv("KOVA_ASKING_PID");
  return asking != NULL ? add(environment, "KOVA_ASKING_PID=%s", asking)
                        : add(environment, "KOVA_ASKING_PID=%ld", (long)getpid());
}

static pthread_mutex_t swapping = PTHREAD_MUTEX_INITIALIZER;

static void leave(Environment *environment) {
  const int error = errno;
  if (environment->callers != NULL) environ = environment->callers;
  pthread_mutex_unlock(&swapping);
  for (size_t i = 0; i < HANDLES; i++)
    if (environment->handles[i] >= 0) close(environment->handles[i]);
  for (size_t i = 0; environment->entries[i] != NULL; i++)
    free(environment->entries[i]);
  errno = error;
}

// Puts the device's environment in place of the caller's, for libc's own system and popen take it from there.
static bool enter(Environment *environment, const char *directory) {
  *environment = (Environment){.handles = {-1, -1}};
  pthread_mutex_lock(&swapping);
  if (!add_programs(environment, directory) || !add(environment, "KOVA_DEVICE=%s", directory) ||
      !add_sanitizer_options(environment) || !add_asking_process(environment)) {
    leave(environment);
    return false;
  }
  environment->callers = environ;
  environ = environment->entries;
  return true;
}

int system(const char *command) {
  char directory[DEVICE_PATH_ROOM];
  if (command == NULL || device_directory(directory) == NULL) return NEXT(system)(command);
  Environment environment;
  if (!enter(&environment, directory)) return -1;
  const int status = NEXT(system)(command);
  leave(&environment);
  return status;
}

FILE *popen(const char *command, const char *mode) {
  char directory[DEVICE_PATH_ROOM];
  if (device_directory(directory) == NULL) return NEXT(popen)(command, mode);
  Environment environment;
  if (!enter(&environment, directory)) return NULL;
  FILE *pipe = NEXT(popen)(command, mode);
  leave(&environment);
  return pipe;
}
