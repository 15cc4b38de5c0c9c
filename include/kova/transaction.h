/* transaction: the pending value check list and the batch validation of one SetParameterValues request.
 *
 * For each request the agent calls the checker of every parameter, then kovaCheckTR069ParameterValues
 * once, then the setter of every parameter. */
#ifndef KOVA_TRANSACTION_H
#define KOVA_TRANSACTION_H

#include <kova/accessors.h>

KOVA_BEGIN_EXPORTS

/* A parameter's name and proposed value. Both texts are owned; the slot is empty while name is NULL. A
 * name that begins with "Local" marks a value that the batch validation took from the store. */
typedef struct {
  char *name, *value;
} PendingValue;
typedef struct {
  PendingValue apnEnable, apnApplyTo, apnBridgeVid;
} PendingApn;

/* Nine groups, each a touched flag (0 or 1) and its slots. */
typedef struct {
  unsigned char wifiTouched;
  PendingValue wifiMode, wifiRate, wifiBandwidth;
  unsigned char lanTouched;
  PendingValue lanIpAddress, lanSubnetMask, dhcpServerEnable, dhcpPoolStart, dhcpPoolEnd;
  unsigned char dnsTouched;
  PendingValue dnsOption, dns1, dns2, dns3;
  unsigned char downloadDiagTouched;
  PendingValue dlState, dlInterface, dlUrl, dlDscp;
  unsigned char uploadDiagTouched;
  PendingValue ulState, ulInterface, ulUrl, ulTestFileLength, ulDscp;
  unsigned char udpEchoTouched;
  PendingValue udpEchoEnable, udpEchoInterface, udpEchoSourceIp, udpEchoPort, udpEchoPlusEnabled;
  unsigned char ipPingTouched;
  PendingValue pingState, pingHost, pingCount, pingTimeout, pingDataSize;
  unsigned char traceRouteTouched;
  PendingValue trState, trHost, trTryCount, trTimeout, trDataSize, trMaxHopCount;
  unsigned char wanApnTouched;
  PendingValue operMode, vpnType, bcpEnable, greType;
  PendingApn apn[8];
} PendingValueCheckList;

/* The values of the request in progress; empty between requests. */
extern PendingValueCheckList gPVCL;

void pvcl_free_slot(PendingValue *slot);
/* Replaces the slot's pair by copies; a NULL text is kept as "". 0, or -1 for a NULL slot. */
int pvcl_set_slot(PendingValue *slot, const char *name, const char *value);
int pvcl_set_slot_value(PendingValue *slot, const char *value);
const char *pvcl_slot_name(const PendingValue *slot);  /* never NULL */
const char *pvcl_slot_value(const PendingValue *slot); /* never NULL */

/* Judges the parked values together, acts on what follows from their combination, and empties the list. 0,
 * or -1 when a group is refused: the names of its parameters are then appended to faultNames, separated by
 * ";" (none when the stored operation mode cannot be loaded). faultNamesSize bounds the names of the
 * WAN/APN group only: give room for all names of the request. */
int kovaCheckTR069ParameterValues(char *faultNames, int faultNamesSize);

KOVA_END_EXPORTS

#endif
