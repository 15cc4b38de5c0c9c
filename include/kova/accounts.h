/* accounts: web and SNMP credentials, web access, the ping watchdog, and checks of the diagnostics
 * objects. */
#ifndef KOVA_ACCOUNTS_H
#define KOVA_ACCOUNTS_H

#include <kova/accessors.h>

KOVA_BEGIN_EXPORTS

/* ---- Web accounts -------------------------------------------------------------------------------------- */

/* Passwords are stored as salted hashes; the getters never tell them. */
kova_getter kovaGetAdminPassword; /* always "" */
kova_setter kovaSetAdminPassword; /* refuses markup; the password policy is not applied */
kova_getter kovaGetUserPassword;  /* always one blank */
kova_setter kovaSetUserPassword;  /* by the password policy; the first 63 characters count */

/* The password policy: printable ASCII with a digit, an upper-case and a lower-case letter and a symbol
 * (or an inner blank), no white space at an end, and none of "%&'+,:;<>?\ or a double quote. 0, or -1 with
 * a console line. */
int mod_check_password(const char *password);
/* What the policy looks for: 1 the text has it, 0 it has not, -1 for NULL. Each tells the console what it
 * found. */
int passwdCheckASCII(const char *text); /* 1: every character is allowed */
int passwdCheckDigit(const char *text);
int passwdCheckUppercase(const char *text);
int passwdCheckLowercase(const char *text);
int passwdCheckSpace(const char *text); /* 1: white space at an end */
int passwdCheckPunctuationCharacter(const char *text);
int passwdCheckInnerSpace(const char *text);
int passwdCheckInvalidCharacter(const char *text); /* 1: a forbidden character */

kova_getter kovaGetWebLockTimeSettings; /* seconds; the buffer is left as it is while nothing is stored */
kova_setter kovaSetWebLockTimeSettings; /* 300 .. 65535, digits only */

/* ---- SNMP ---------------------------------------------------------------------------------------------- */

/* Every accepted setting starts the service anew. User name and password are refused while it is off. */
kova_getter kovaGetSNMPEnable, kovaGetSNMPUserName;
kova_getter kovaGetSNMPPassword; /* always one blank */
kova_setter kovaSetSNMPEnable, kovaSetSNMPUserName, kovaSetSNMPPassword;

/* ---- Diagnostics objects ------------------------------------------------------------------------------- */

/* These judge a value and store nothing: 0, or -1. */
kova_setter kovasetDiagnosticsHost, kovasetTraceRouteDiagnosticsHost;
kova_setter kovasetIPingInterface, kovasetTraceRouteDiagnosticsInterface;
/* Host number index (from 1) of the last traceroute; -1 when there is none. */
int kovaGetDiagnosticsRouteHopsHopHost(int index, char *out, unsigned int outlen);

/* ---- Ping watchdog ------------------------------------------------------------------------------------- */

/* Markup is refused, anything else is stored. The service finds new values by itself. */
kova_getter getTR069PingWatchdogEnable, getTR069PingWatchdogIPAddress, getTR069PingWatchdogTimeout,
    getTR069PingWatchdogCount, getTR069PingWatchdogFailureCountToReboot;
kova_setter setTR069PingWatchdogEnable; /* "" and "0" are off, any other text is on */
kova_setter setTR069PingWatchdogIPAddress, setTR069PingWatchdogTimeout, setTR069PingWatchdogCount,
    setTR069PingWatchdogFailureCountToReboot;

KOVA_END_EXPORTS

#endif
