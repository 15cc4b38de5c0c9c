/* radio: the LTE band table, the radio's status, and cell selection.
 *
 * Status values come from what the LTE daemon publishes. Getters answer 0 with a fall-back text ("", "NONE",
 * "N/A", "0") while a value is not known, unless said otherwise. */
#ifndef KOVA_RADIO_H
#define KOVA_RADIO_H

#include <kova/accessors.h>
#include <stdint.h>

KOVA_BEGIN_EXPORTS

/* ---- Band table ---------------------------------------------------------------------------------------- */

/* A row of the band table: lowest carrier frequencies in MHz, first and last channel numbers (EARFCN). */
typedef struct {
  uint32_t band, reserved;
  double dl_low_freq;
  uint32_t dl_earfcn_low, dl_earfcn_high;
  double ul_low_freq;
  uint32_t ul_earfcn_low, ul_earfcn_high;
} LteBand;
extern const LteBand g_band_list[46]; /* ended by a row of zeros */

double getLowFreq(unsigned int band);  /* MHz; 0.0 for a band that is not in the table */
double getHighFreq(unsigned int band); /* MHz, one channel above the band's last; 0.0 for an unknown band */

/* ---- Serving cell -------------------------------------------------------------------------------------- */

kova_getter kovaGetTR069CellIDValue, kovaGetTR069EnbIdValue; /* decimal; -1 and "" while unknown */
kova_getter kovaGetTR069ECGIValue, kovaGetTR069PLMNValue;
kova_getter kovaGetTR069MCCValue, kovaGetTR069MNCValue; /* nothing is written below 4 bytes of buffer */
kova_getter kovaGetTR069PCIValue, kovaGetTR069RSSIValue, kovaGetTR069RSRQValue, kovaGetTR069SINRValue;
kova_getter kovaGetTR069TXPWRValue; /* capped by the power that spectrum access grants */
kova_getter kovaGetTR069RSRP0Value, kovaGetTR069RSRP1Value, kovaGetTR069CINR0Value, kovaGetTR069CINR1Value;
kova_getter kovaGetTR069CQI0Value, kovaGetTR069CQI1Value;
kova_getter kovaGetTR069DLMcsValue, kovaGetTR069ULMcsValue;
kova_getter kovaGetTR069DLFrequencyValue, kovaGetTR069ULFrequencyValue; /* kHz */
kova_getter kovaGetTR069BandwidthValue;                                 /* MHz */
kova_getter kovaGetTR069BandValue, kovaGetTR069EARFCNValue, kovaGetTR069RoamValue;
kova_getter kovaGetTR069IMSIValue, kovaGetTR069IMEIValue;

/* Fields of the cell record, which is split in place; "NONE" for a missing field. */
const char *getInternetStatusPCI_vals(char *record);
const char *getInternetStatusRSSI_vals(char *record);
const char *getInternetStatusRSRQ_vals(char *record);
const char *getInternetStatusSINR_vals(char *record);
const char *getInternetStatusTXPWR_vals(char *record);
/* MHz as text: downlink for 1, else uplink; "NONE". The caller frees it, as the next one. */
char *getInternetStatusFrequency_vals(int which);
char *getInternetStatusBandwidth_vals(void);                  /* kHz, or "NONE" */
int getInternetDLEARFCN_vals(char *out, unsigned int outlen); /* 0, or -1 */

/* ---- Link ---------------------------------------------------------------------------------------------- */

kova_getter kovaGetTR069LTEStatus; /* as kovaGetTR069WANConnectionConnectionStatus */
kova_getter kovaGetTR069LTEMode;   /* "FDD" or "TDD" */
kova_getter kovaGetTR069LTEOperator;
kova_getter kovaGetTR069LTEDnsServer; /* "primary,secondary"; always terminated */
/* Addresses of the PDN interfaces. */
kova_getter kovaGetTR069APN1IPAddress, kovaGetTR069APN2IPAddress, kovaGetTR069APN3IPAddress,
    kovaGetTR069APN4IPAddress;
kova_getter kovaGetTR069RxPacketsValue, kovaGetTR069TxPacketsValue, kovaGetTR069RxBytesValue,
    kovaGetTR069TxBytesValue;
/* From the rate file: bit/s, bytes and packets; "N/A" when it is missing, malformed or out of date. */
kova_getter kovaGetTR069Apn1RecvRateValue, kovaGetTR069Apn1SendRateValue, kovaGetTR069Apn1RecvTotTptValue,
    kovaGetTR069Apn1SendTotTptValue, kovaGetTR069Apn1RecvTotPktValue, kovaGetTR069Apn1SendTotPktValue;
kova_getter kovaGetTR069WANDLCurRateValue, kovaGetTR069WANULCurRateValue, kovaGetTR069WANDLMinRateValue,
    kovaGetTR069WANDLMaxRateValue, kovaGetTR069WANULMinRateValue, kovaGetTR069WANULMaxRateValue;
kova_getter kovaGetTR069WANUplinkRateValue, kovaGetTR069WANDownlinkRateValue; /* "0" when not connected */
kova_getter kovaGetTR069WANDLBler;

/* ---- Cell selection ------------------------------------------------------------------------------------ */

/* The bands that the modem supports in the configured duplex mode, as "|1|3|": as many as fit. 0, -1, or len
 * when it is below 1. */
int getSupportBands(char *out, int len);
/* Setters re-apply the LTE network. Their failures are the failing store's code, or -1. */
kova_getter kovaGetTR069ScanMode; /* "fullband", "freqpreferred", "pcilock", "pcionlylock" or "unknown" */
kova_setter kovaSetTR069ScanMode; /* any other text stores nothing and answers 0 */
kova_getter kovaGetTR069PciLock;  /* cells "EARFCN,PCI" joined by ";"; PCI up to 503 */
kova_checker kovaChkTR069PciLock;
kova_setter kovaSetTR069PciLock;     /* the first 19 cells; one with a 0 is left out */
kova_getter kovaGetTR069PciOnlyLock; /* ranges "start,end" joined by ";"; bounds 0 .. 504 */
kova_checker kovaChkTR069PciOnlyLock;
kova_setter kovaSetTR069PciOnlyLock;   /* the empty text leaves the ranges as they are */
kova_getter kovaGetTR069FreqPreferred; /* groups "band,EARFCN,EARFCN" joined by ";" */
kova_checker kovaChkTR069FreqPreferred;
kova_setter kovaSetTR069FreqPreferred;

KOVA_END_EXPORTS

#endif
