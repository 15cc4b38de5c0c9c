/* libltesdk and liblted: the LTE daemon's client. */
#ifndef PLATFORM_LTE_H
#define PLATFORM_LTE_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

typedef struct lted_client lted_client;
typedef struct {
  uint8_t count;
  uint16_t band[255];
} RrcBandList;
typedef struct {
  int32_t duplex; /* 0 FDD, 1 TDD */
  int32_t band, earfcn_low, earfcn_high;
} BandInfo;

lted_client *new_lted_client(void); /* NULL: no daemon */
void destory_lted_client(lted_client *client);
int rrc_band_list_get(lted_client *client, RrcBandList *list); /* 0: filled */
int get_band_info(int band, BandInfo *info);                   /* 0: filled */
int get_band_info_by_earfcn(int earfcn, BandInfo *info);       /* 0: filled */

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
