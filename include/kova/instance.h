/* instance: the state of the process, its start, its trace and its commands. */
#ifndef KOVA_INSTANCE_H
#define KOVA_INSTANCE_H

#include <kova/accessors.h>
#include <stdint.h>

KOVA_BEGIN_EXPORTS

/* 1: every accessor serves the secondary management instance, with its own keys, tools and events. */
extern uint32_t gSecondaryInstance;
/* Interface to which the agent is bound, at most 31 characters; empty: not bound. */
extern char gBindInterface[32];

/* Selects the secondary instance for the life of the process. */
void setSecondaryInstance(void);
/* Keeps the first 31 characters of ifname; NULL or "" means not bound. */
void setBindInterface(const char *ifname);

/* Receives every debug message and discards it: the place for a debugger's breakpoint. */
void dbg_trace(const char *format, ...) __attribute__((format(printf, 1, 2)));
/* Runs cmd in a shell and collects its output in out, which the caller has zeroed. Output that does not
 * fit is dropped from the first line (or 255-character piece of a line) that does not fit whole. Returns
 * out, or NULL with out untouched when the command could not be started or is NULL. */
char *shell_cmd(const char *cmd, char *out, int outlen);
/* Is this the first run since the agent's executable changed? 1 yes (from now on it is not), 0 no, -1
 * unknown. */
int isFTR(void);
/* To be called once at the agent's start: corrects settings that earlier firmware left behind. 0, or
 * isFTR's -1. */
int init_parameters(void);
/* Writes one line to the system log, cut at 255 characters. */
void sasSyslogMessage(const char *format, ...) __attribute__((format(printf, 1, 2)));
kova_getter kovaGetUpgradeScript; /* path of the firmware update script; always terminated */

KOVA_END_EXPORTS

#endif
