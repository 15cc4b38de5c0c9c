/* libtarn_nvram: the key/value store, the rule checker, traffic counters and the console log.
 *
 * These prototypes are what the library imports. On the device the vendor's library answers them, on a development
 * host platform/host does. Values are texts; a key exists or it does not. */
#ifndef PLATFORM_NVRAM_H
#define PLATFORM_NVRAM_H

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* Copies the value, NUL-terminated, into buf and returns 1. Any other answer: no such key, buf is as it was. */
int nvram_bufget_string(int section, const char *key, char *buf, int size);
/* A newly allocated copy that the caller frees; the empty text for a missing key, never NULL. */
char *nvram_bufget(int section, const char *key);
/* 0, or negative when the value could not be stored. */
int nvram_bufset(int section, const char *key, const char *value);

/* Judges a value by the rule (group, item). 0 or more: valid; a negative code says what is wrong. */
int tarn_check_param(int group, const char *value, int item);
/* 1: the stored value is a switch that is on, 0: off. */
int tarn_check_nvram_value(int section, const char *key);

long tarn_get_uptime(void); /* seconds */

/* A traffic counter of a logical interface ("lan", "wan") as decimal text; 0 when it was written.
 * Counters: 10 received bytes, 11 received packets, 2 sent bytes, 3 sent packets. */
int tarn_get_ifname_statistic(const char *logical, char *text, int size, int counter);
int tarn_get_wlan_if_statistic(char *text, int size, int counter, int radio, int vap);
long long tarn_get_if_statistic(const char *ifname, int counter);
int tarn_is_interface_exist(const char *ifname);            /* 0: it exists */
int tarn_getIfMac(const char *ifname, char *out, int size); /* 0: written, "00:1A:2B:3C:4D:5E" */

void tarn_log_console(const char *format, ...) __attribute__((format(printf, 1, 2)));
void tarn_log_type0(int event, int severity, int module);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
