/* sas: registration with a spectrum access system (CBRS), and the grants that a domain proxy passes on.
 *
 * Every accepted setting is written to the system log. Setters refuse markup, and what the rule checker
 * refuses. */
#ifndef KOVA_SAS_H
#define KOVA_SAS_H

#include <kova/accessors.h>

KOVA_BEGIN_EXPORTS

/* ---- Registration -------------------------------------------------------------------------------------- */

kova_getter sasGetTr069enableMode, sasGetTr069useDP, sasGetTr069serverURL, sasGetTr069sas_step_choice,
    sasGetTr069UserId, sasGetTr069fccId, sasGetTr069callSign, sasGetTr069cbsdCategory,
    sasGetTr069radioTechnology;
kova_setter sasSetTr069enableMode, sasSetTr069useDP, sasSetTr069serverURL, sasSetTr069sas_step_choice,
    sasSetTr069UserId, sasSetTr069fccId, sasSetTr069callSign, sasSetTr069cbsdCategory,
    sasSetTr069radioTechnology;
kova_getter sasGetTr069cbsdSerialNumber; /* -1 and "" while unknown */
kova_getter sasGetTr069antennaGain, sasGetTr069antennaAzimuth, sasGetTr069antennaDowntilt,
    sasGetTr069antennaBeamwidth, sasGetTr069antennaModel;
kova_setter sasSetTr069antennaGain, sasSetTr069antennaModel;
kova_setter sasSetTr069antennaAzimuth;                       /* degrees, 0 .. 359 */
kova_setter sasSetTr069antennaDowntilt;                      /* degrees, -90 .. 90 */
kova_setter sasSetTr069antennaBeamwidth;                     /* degrees, 0 .. 360 */
kova_getter sasGetTr069CPIlatitude, sasGetTr069CPIlongitude; /* millionths of a degree; "0" while unset */
kova_setter sasSetTr069CPIlatitude, sasSetTr069CPIlongitude;
kova_getter sasGetTr069CPIheight; /* metres, also when the device keeps feet */
kova_setter sasSetTr069CPIheight; /* what is kept has at most 7 characters */
kova_getter sasGetTr069CPIheightType, sasGetTr069CPIindoorDeployment, sasGetTr069CPIgroupType,
    sasGetTr069CPIgroupId, sasGetTr069CPIcpiId, sasGetTr069CPIcpiName, sasGetTr069CPIinstallCertificationTime;
kova_setter sasSetTr069CPIheightType, sasSetTr069CPIindoorDeployment, sasSetTr069CPIgroupType,
    sasSetTr069CPIgroupId, sasSetTr069CPIcpiId, sasSetTr069CPIcpiName, sasSetTr069CPIinstallCertificationTime;
kova_getter sasGetTr069cellInfobandwidth, sasGetTr069cellInfolowFrequency, sasGetTr069cellInfohighFrequency;
kova_setter sasSetTr069cellInfobandwidth, sasSetTr069cellInfolowFrequency, sasSetTr069cellInfohighFrequency;

/* ---- Grant --------------------------------------------------------------------------------------------- */

kova_getter kovaGetTR069ConfigmaxEirp, kovaGetTR069ConfiglowFrequency, kovaGetTR069ConfighighFrequency;
kova_setter kovaSetTR069ConfigmaxEirp, kovaSetTR069ConfiglowFrequency, kovaSetTR069ConfighighFrequency;
/* Refused while the domain proxy is switched off. */
kova_getter kovaGetTR069SasOperationStatus, kovaGetTR069ConfigRadioEnable,
    kovaGetTR069ConfigpowerSpectralDensity, kovaGetTR069ConfigtransmitExpireTime;
kova_setter kovaSetTR069SasOperationStatus, kovaSetTR069ConfigRadioEnable,
    kovaSetTR069ConfigpowerSpectralDensity, kovaSetTR069ConfigtransmitExpireTime;

KOVA_END_EXPORTS

#endif
