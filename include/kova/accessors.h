/* accessors: the shapes of what the families export, and how it is exported.
 *
 * All functions are plain C and are to be called from one thread. A NULL text is taken as the empty text,
 * where nothing else is said. */
#ifndef KOVA_ACCESSORS_H
#define KOVA_ACCESSORS_H

/* Between these two stand a header's exported declarations; everything else in the library is hidden. */
#ifdef __cplusplus
#define KOVA_BEGIN_EXPORTS                                                                                   \
  extern "C" {                                                                                               \
  _Pragma("GCC visibility push(default)")
#define KOVA_END_EXPORTS                                                                                     \
  _Pragma("GCC visibility pop")                                                                              \
  }
#else
#define KOVA_BEGIN_EXPORTS _Pragma("GCC visibility push(default)")
#define KOVA_END_EXPORTS _Pragma("GCC visibility pop")
#endif

KOVA_BEGIN_EXPORTS

/* Writes the value as text into buf, padded with NULs up to buflen. A value of buflen characters or more
 * fills buf without a terminator, where nothing else is said: give room for 256 bytes. 0, or -1 on failure.
 * A setting of the key/value store that was never stored reads as "". */
typedef int kova_getter(char *buf, unsigned int buflen);
/* Stores the value: 0, or -1 when it is refused (nothing is stored then). */
typedef int kova_setter(const char *value);
/* Judges one value of a request: 0, or -1 when it is refused. Checkers of grouped parameters park the
 * accepted pair for the batch validation (<kova/transaction.h>). paramName is the full parameter
 * name. */
typedef int kova_checker(const char *paramName, const char *value);

KOVA_END_EXPORTS

#endif
