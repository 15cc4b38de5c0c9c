/* network: look-ups of interfaces, routes, neighbours and counters, and what the operation mode says. */
#ifndef KOVA_NETWORK_H
#define KOVA_NETWORK_H

#include <kova/accessors.h>

KOVA_BEGIN_EXPORTS

typedef struct {
  unsigned char mac[6];
  unsigned char ip[4];
} LanInfo;

int get_interface_ip(const char *ifname, char *out, int outlen); /* dotted IPv4 address; 0, or -1 */
/* Interface of the default route, or the empty text; out is zeroed by the caller. Always 0. */
int get_default_route_if(char *out, int outlen);
int check_net_interface(const char *ifname); /* 0: it exists, -1 */
/* Interface whose own network holds the IPv4 address: 0 found, 1 none does, -1 the kernel cannot tell or
 * the address is empty. */
int get_route_ifname(const char *ip, char *out, int outlen);
int getLanSpeed(const char *ifname); /* Mbit/s, -1 without a link */
const char *getLanIfName(void);      /* the LAN bridge */
/* The neighbours on the LAN bridge. There is no capacity: list must have room for every line of the ARP
 * table. */
void getLanInfoList(LanInfo *list, int *count);
/* 1 when a and b, and a and c, lie in the same network under mask, else 0. */
int IPRangeCheck(const char *a, const char *mask, const char *b, const char *c);
/* Traffic counter of "eth0", "wlan0" or "lte0pdn": 0 received bytes, 1 received packets, 2 sent bytes, 3
 * sent packets. Byte counts carry a unit in the first form; an unknown name or index reads as 0. The caller
 * frees the text, which is NULL only without memory. */
char *getInterfaceStatistic(const char *ifname, int index);
char *getInterfaceStatistic_unitnochange(const char *ifname, int index);

/* ---- The operation mode ---------------------------------------------------------------------------------- */

int kova_get_oper_mode(void); /* operation mode 0 .. 3, 0 when it is not set */
int _getOperationMode(void);  /* operation mode 0, 1 or 2; mode 3 reads as 0 */
/* 1: the operation mode with its VPN rules DHCP relay out, 0: it is possible. */
int checkDHCPRelayIsNotSupport(void);
int getWanIfName(void);     /* 1: data runs over eth0.1, 2: over eth0.2, 0: neither */
kova_getter kovaGetTR069If; /* interface of the management traffic; -1 and "" while it has none */

KOVA_END_EXPORTS

#endif
