/* voice: the telephone line: SIP, codecs, gains, RTP, and speed dialling.
 *
 * Settings take effect when kovaSetVoIPApply is set to "1". */
#ifndef KOVA_VOICE_H
#define KOVA_VOICE_H

#include <kova/security.h>

KOVA_BEGIN_EXPORTS

/* ---- SIP account and servers --------------------------------------------------------------------------- */

kova_getter kovaGetVoipBasicEnable;
kova_setter kovaSetVoipBasicEnable;
/* The following setters are refused while SIP is stored as off. */
kova_getter kovaGetSIPServerMode; /* "0" proxy and registrar, "1" P-CSCF of the mobile network */
kova_setter kovaSetSIPServerMode;
/* Only in server mode "0". */
kova_getter kovaGetSIPProxyServer, kovaGetSIPProxyServerPort, kovaGetSIPRegistrarServer,
    kovaGetSIPRegistrarServerPort, kovaGetSIPUserAgentDomain;
kova_setter kovaSetSIPProxyServer, kovaSetSIPProxyServerPort, kovaSetSIPRegistrarServer,
    kovaSetSIPRegistrarServerPort, kovaSetSIPUserAgentDomain;
/* Only in server mode "1". */
kova_getter kovaGetPCSCFServerDomain, kovaGetPCSCFServerPort;
kova_setter kovaSetPCSCFServerDomain, kovaSetPCSCFServerPort;
/* In either mode. */
kova_getter kovaGetDirectoryNumber, kovaGetAuthUserName;
kova_getter kovaGetAuthPassword; /* never the password: always one blank */
kova_setter kovaSetDirectoryNumber, kovaSetAuthUserName, kovaSetAuthPassword;

/* ---- Line settings ------------------------------------------------------------------------------------- */

kova_getter kovaGetDTMFMethod, kovaGetFaxOption, kovaGetSilenceSuppression, kovaGetRegions, kovaGetCallerID,
    kovaGetDialingInterval, kovaGetOffhookInterval;
kova_setter kovasetDTMFMethod, kovasetFaxOption, kovasetSilenceSuppression, kovasetRegions, kovasetCallerID,
    kovasetDialingInterval, kovasetOffhookInterval;
kova_getter kovaGetRTPLocalPortMin, kovaGetRTPLocalPortMax;
kova_setter kovasetRTPLocalPortMin, kovasetRTPLocalPortMax; /* the minimum must not exceed the maximum */
kova_getter kovaGetCompressionType;                         /* three codecs, "primary,secondary,third" */
kova_setter kovasetCompressionType;                         /* all different, the primary not empty */
/* 0, -20, -40, -60, -80 or -100. Each setter writes what the other getter reads. */
kova_getter kovaGetListenGain, kovaGetSpeakerGain;
kova_setter kovasetListenGain, kovasetSpeakerGain;

/* ---- Status and apply ---------------------------------------------------------------------------------- */

kova_getter kovaGetVoiceProfileLineState;  /* call state, "Idle" without a call; "None" while unknown */
kova_getter kovaGetVoiceProfileLineStatus; /* registration status, as "Registered"; "None" while unknown */
kova_getter kovaGetPCSCFServerStatus;      /* address of the P-CSCF in use, or "None" */
/* Exactly "1"; refused while the line is busy, and within 15 seconds of the last apply with SIP on. */
kova_setter kovaSetVoIPApply;

/* ---- Speed dialling ------------------------------------------------------------------------------------ */

/* Rows "dial number,real number,note", dial number 1 to 16; no number twice. */
kova_row_add kovaaddQuickdialRule;
kova_row_setter kovaSetQuickdialRule;
kova_row_getter kovaGetQuickdialRule;
kova_row_delete kovadelQuickdialRule;
int checkQuickdialAllParam(const char *row);                    /* 0, or -1 */
int checkSpeedDialParamRepeated(const char *row, int position); /* 0, or -1 for a number of another row */

KOVA_END_EXPORTS

#endif
