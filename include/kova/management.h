/* management: the management server's settings with their backup, and what the device says about itself. */
#ifndef KOVA_MANAGEMENT_H
#define KOVA_MANAGEMENT_H

#include <kova/accessors.h>

KOVA_BEGIN_EXPORTS

/* ---- Management server --------------------------------------------------------------------------------- */

/* Each management instance has its own settings. Setters ask the rule checker, refuse markup, and start
 * nothing, where nothing else is said. Switches take "true", "false", "1" and "0" (and texts that hold
 * or begin with them). */
kova_getter kovaGetTR069ManagementServerURL, kovaGetTR069ManagementServerUsername,
    kovaGetTR069ManagementServerPassword; /* the password as it is stored */
kova_setter kovaSetTR069ManagementServerURL, kovaSetTR069ManagementServerUsername,
    kovaSetTR069ManagementServerPassword;
kova_getter kovaGetTR069PeriodicInformEnable, kovaGetTR069PeriodicInformInterval,
    kovaGetTR069PeriodicInformTime;
kova_setter kovaSetTR069PeriodicInformEnable;
kova_setter kovaSetTR069PeriodicInformInterval; /* seconds; refused while the primary's inform is off */
kova_setter kovaSetTR069PeriodicInformTime;     /* any text */
kova_getter kovaGetTR069ParameterKey;
kova_setter kovaSetTR069ParameterKey; /* any text */

/* "http://ADDRESS:7547", for the secondary instance port 7550: worked out anew from the interface that
 * reaches the management server, and stored. "" while it has no address. A URL that is set lasts until a
 * read finds an address. */
kova_getter kovaGetTR069ConnectionRequestURL;
kova_setter kovaSetTR069ConnectionRequestURL; /* any text */
kova_getter kovaGetTR069ConnectionRequestUsername, kovaGetTR069ConnectionRequestPassword;
kova_setter kovaSetTR069ConnectionRequestUsername, kovaSetTR069ConnectionRequestPassword;
kova_getter kovaGetTR069UDPConnectionRequestAddress;
kova_setter kovaSetTR069UDPConnectionRequestAddress;                  /* refuses markup only */
kova_getter kovaGetTR069UDPConnectionRequestAddressNotificationLimit; /* always "" */
kova_setter kovaSetTR069UDPConnectionRequestAddressNotificationLimit;

kova_getter kovaGetTR069STUNEnable, kovaGetTR069STUNServerAddress, kovaGetTR069STUNServerPort,
    kovaGetTR069STUNMaximumKeepAlivePeriod, kovaGetTR069STUNMinimumKeepAlivePeriod;
kova_getter kovaGetTR069STUNUsername, kovaGetTR069STUNPassword; /* always "" */
kova_setter kovaSetTR069STUNEnable;                             /* a switch, stored as it is given */
kova_setter kovaSetTR069STUNServerAddress, kovaSetTR069STUNServerPort, kovaSetTR069STUNUsername,
    kovaSetTR069STUNPassword, kovaSetTR069STUNMaximumKeepAlivePeriod, kovaSetTR069STUNMinimumKeepAlivePeriod;
kova_getter kovaGetTR069NatDetected;
kova_setter kovaSetTR069NatDetected; /* a switch, stored as it is given */

/* One setting for both instances each. */
kova_getter kovaGetTR069X_FingerPrintEnable, kovaGetTR069X_STUNRealm, kovaGetTR069X_Loglevel;
kova_setter kovaSetTR069X_FingerPrintEnable, kovaSetTR069X_STUNRealm;
kova_setter kovaSetTR069X_Loglevel; /* any text */

kova_getter kovaGetTR069SSLCert, kovaGetTR069SSLCaCert; /* paths */
kova_getter kovaGetTR069SSLEnable;

/* The device at the operator's cloud. */
kova_getter kovaGetTR069CloudkeyValue, kovaGetTR069NickNameValue;
kova_setter kovaSetTR069CloudkeyValue, kovaSetTR069NickNameValue;

/* Mode 1 keeps the server settings of both instances in a file, mode 2 puts them back and removes the
 * file; any other mode does nothing. 0 (also when there is no file to restore), or -1 when the file cannot
 * be opened. */
int backup_restore_settings(int mode);

/* Traffic of the WiFi interface; byte counts carry a unit ("12 KB"). */
kova_getter kovaGetWLANConfigurationTotalBytesSent, kovaGetWLANConfigurationTotalBytesReceived,
    kovaGetWLANConfigurationTotalPacketsSent, kovaGetWLANConfigurationTotalPacketsReceived;

/* ---- The web pages --------------------------------------------------------------------------------------- */

/* Switches: "false" in any case and "0" are off, any other text is on. Setting the first or the port restarts
 * the web service, which takes 3 seconds. */
kova_getter kovaGetTR069HttpsEnable, kovaGetTR069HttpsWanEnable, kovaGetTR069HttpsPort;
kova_setter kovaSetTR069HttpsEnable, kovaSetTR069HttpsWanEnable, kovaSetTR069HttpsPort;

/* ---- Device information -------------------------------------------------------------------------------- */

kova_getter kovaGetTR069DeviceSummary, kovaGetTR069Manufacturer, kovaGetTR069ManufacturerOUI,
    kovaGetTR069ModelName, kovaGetTR069Description, kovaGetTR069ProductClass, kovaGetTR069SpecVersion,
    kovaGetTR069ModemFirmwareVersion, kovaGetTR069AdditionalSoftwareVersion, kovaGetTR069SoftwareVersion;
kova_getter kovaGetTR069SerialNumber;    /* the IMEI while no serial number is known */
kova_getter kovaGetTR069HardwareVersion; /* "N/A" while none is known */
kova_getter kovaGetTR069ProvisioningCode;
kova_setter kovaSetTR069ProvisioningCode; /* any text; the clock is synchronised too */
kova_getter kovaGetTR069UpTime;           /* seconds */
kova_getter kovaGetTR069ConntionTime;     /* seconds since the LTE connection came up, "0" without one */
kova_getter kovaGetTR069MemoryStatusTotal,
    kovaGetTR069MemoryStatusFree; /* units of 1000 bytes; -1 when unknown */
/* Appends the whole device log to buf, whatever buflen: hand in a zeroed buffer that is large enough. */
kova_getter kovaGetTR069DeviceLog;
kova_getter kovaGetTR069MapnQos;
kova_setter kovaSetTR069MapnQos; /* takes any text and stores nothing */

/* The first half of an interface's hardware address as "001A2B" (7 bytes); 0, or -1. */
int kova_getManufacturerMac(const char *ifname, char *out);

KOVA_END_EXPORTS

#endif
