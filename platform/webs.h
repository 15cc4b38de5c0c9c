/* The web-validation library: address and number rules that the device's web pages share with the data model, and
 * the operation-mode record. */
#ifndef PLATFORM_WEBS_H
#define PLATFORM_WEBS_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* The head of the operation-mode record; what follows is the platform's own. */
typedef struct OperMode {
  int32_t oper_mode, vpn_type;
  uint8_t bcp_enable;
  int32_t gre_type;
} OperMode;

uint32_t websIP2Num(const char *ip);                                          /* host order */
int webscheckSameSubnet(const char *ip, const char *mask, const char *other); /* non-zero: same */
int webscheckIpStartEnd(const char *start, const char *end);                  /* non-zero: start <= end */
int websLengthRule(const char *text, int max);                                /* non-zero: within */
int webcheckNumber(const char *text);                                         /* non-zero: decimal */
int webscheckRange(const char *text, int min, int max);                       /* non-zero: within */
int websInputValueRule(const char *value, int min, int max);                  /* non-zero: within */
int websCheckURL(const char *url);                                            /* negative: refused */
int webscheckScanMode(const char *code, const char *duplex);                  /* 0, -1 mode, -2 duplex */
int CheckRFModeAndBW(const char *mode, const char *bandwidth);                /* -1: not compatible */
int CheckRFModeAndRate(const char *mode, const char *rate);                   /* negative: not compatible */
int check_ipv4_start_end(const char *start, const char *end);                 /* 0: start <= end */
int check_ipv6_start_end(const char *start, const char *end);                 /* 0: start <= end, 5: above */
int is_ip6_and_prefix_valid(const char *text);                                /* -1: invalid */
int isIpLastChar0(const char *ip);                                            /* negative: it is */
int isIpLastChar255(const char *ip);                                          /* negative: it is */
int checkIpPrivate(const char *ip);
int checkDMZParam(const char *ip);                          /* negative: refused */
int split(char **array, char *text, const char *separator); /* in place; number of pieces */
char *update_rand_char(void);                               /* allocated salt */
int gen_weblogin_passwd(const char *password, const char *salt, int saltLength, char *hash, int size);
OperMode *getOperModeFromNvram(void); /* NULL: cannot be loaded */
void OperMode_delete(OperMode *record);
int OperMode_checkKeyWritableFromNvram(const char *key); /* 1: writable now; any other answer refuses */

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
