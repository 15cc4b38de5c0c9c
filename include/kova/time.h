/* time: time zone, network time and daylight saving.
 *
 * A date-time text is "2026-11-21T03:16:16", local time. Getters of date-time texts write it whole,
 * whatever buflen: give room for 256 bytes. Both management instances have one clock. */
#ifndef KOVA_TIME_H
#define KOVA_TIME_H

#include <kova/accessors.h>
#include <time.h>

KOVA_BEGIN_EXPORTS

kova_getter kovaGetDeviceTimeNTPServer;
kova_setter kovasetDeviceTimeNTPServer;
kova_getter kovaGetCurrentLocalTime;

/* The offset as "+05:45", hours -13 .. +13. Setting a zone that has no daylight saving switches it off
 * (not for "+13:00"). The getter prints a line on standard output for zones of half and quarter hours. */
kova_getter kovaGetLocalTimeZone;
kova_setter kovasetLocalTimeZone;

/* Setters of daylight saving are refused in zones that have none. Start and end are given as a date; the
 * month, the weekday and the week of the month of that date are kept, and read back as a date of the
 * current year (of the last one while no month is stored). */
kova_getter kovaGetDaylightSavingsUsed;
kova_setter kovasetDaylightSavingsUsed;
kova_getter kovaGetDaylightSavingsStart, kovaGetDaylightSavingsEnd;
kova_setter kovasetDaylightSavingsStart, kovasetDaylightSavingsEnd;
int kovaCheckLocalTimeZone(void); /* 0: the stored zone has daylight saving, -1 */

kova_setter kovasetNTPApply;   /* exactly "1": synchronises the clock */
kova_getter kovaGetNTPApply;   /* leaves the buffer as it is */
int SyncfromNetworkTime(void); /* sets the process's zone, synchronises the clock; the script's exit status */

int getDateTime(const char *text, struct tm *tm);             /* 0, or -1 */
void setDateTime(char *dst, const struct tm *tm);             /* at most 256 bytes */
time_t getDaylightDateTime(int month, int week, int weekday); /* of the current year; weekday 0 is Sunday */

KOVA_END_EXPORTS

#endif
