/* events: CPE events, delivered to the device's event dispatcher. */
#ifndef KOVA_EVENTS_H
#define KOVA_EVENTS_H

#include <kova/accessors.h>

KOVA_BEGIN_EXPORTS

/* Methods. */
enum { KOVA_CLASS_NOTIFY, KOVA_CLASS_CALL, KOVA_CLASS_IS_BUSY, KOVA_CLASS_MAX };
/* Events. */
enum {
  KOVA_EVT_SYSTEM_REBOOT,
  KOVA_EVT_SYSTEM_RESET,
  KOVA_EVT_AGENT_STOP,
  KOVA_EVT_AGENT_START,
  KOVA_EVT_AGENT_CONFIG_CHANGED,
  KOVA_EVT_WEB_SERVICE_REINIT,
  KOVA_EVT_DDOS_FILTER, /* denial-of-service filter */
  KOVA_EVT_MAX
};
/* Sends an event (KOVA_EVT_...) by a method (KOVA_CLASS_...). 0, or -1 for any other number. */
int kovaSendTR069CpeEvent(int method, unsigned int event);
/* Delivers a free-form event text of 1 to 234 characters. */
void kova_trigger_cpe_event(const char *event);
/* Announces changed NAT settings; in the VPN mode the IPv4 NAT service is restarted, which takes 3
 * seconds. */
void kova_nat_cfg_changed(void);

KOVA_END_EXPORTS

#endif
