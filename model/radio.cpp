#include "model/rows.hpp"

#include <kova/radio.h>

namespace kova::model {
namespace {

// clang-format off
#define LTE       "InternetGatewayDevice.X_KOVA_LTE."
#define CELL      LTE "Cell."
#define BEARER(n) LTE "APN." #n "."
#define TRAFFIC   LTE "Traffic."
#define RATE      LTE "Rate."
#define SELECTION LTE "CellSelection."

constexpr Parameter rows[] = {
    // Link.
    READ_ONLY (LTE "Status", String, kovaGetTR069LTEStatus,
               "", "Off, Scanning, No Network, Connecting, Connected, Connect error or Scanned"),
    READ_ONLY (LTE "Mode", String, kovaGetTR069LTEMode, "", "Duplex mode: FDD or TDD"),
    READ_ONLY (LTE "Operator", String, kovaGetTR069LTEOperator, "", "Name of the operator"),
    READ_ONLY (LTE "Roaming", String, kovaGetTR069RoamValue, "", "Roaming state"),
    READ_ONLY (LTE "DNSServers", List, kovaGetTR069LTEDnsServer,
               "", "First and second DNS server of the operator; empty while not connected"),
    READ_ONLY (LTE "IMSI", String, kovaGetTR069IMSIValue, "", "Identity of the SIM"),
    READ_ONLY (LTE "IMEI", String, kovaGetTR069IMEIValue, "", "Identity of the modem"),

    // Serving cell.
    READ_ONLY (CELL "CellID", UnsignedInt, kovaGetTR069CellIDValue,
               "", "E-UTRAN cell identity; a fault while it is not known"),
    READ_ONLY (CELL "ENodeBID", UnsignedInt, kovaGetTR069EnbIdValue,
               "", "Identity of the base station; a fault while it is not known"),
    READ_ONLY (CELL "ECGI", String, kovaGetTR069ECGIValue, "", "Global cell identity"),
    READ_ONLY (CELL "PLMN", String, kovaGetTR069PLMNValue, "", "Country and network code"),
    READ_ONLY (CELL "MCC", String, kovaGetTR069MCCValue, "", "Country code, three digits"),
    READ_ONLY (CELL "MNC", String, kovaGetTR069MNCValue, "", "Network code, two or three digits"),
    READ_ONLY (CELL "PCI", String, kovaGetTR069PCIValue, "", "Physical cell identity, or NONE"),
    READ_ONLY (CELL "Band", UnsignedInt, kovaGetTR069BandValue, "", "Operating band"),
    READ_ONLY (CELL "EARFCN", UnsignedInt, kovaGetTR069EARFCNValue, "", "Downlink channel number"),
    READ_ONLY (CELL "Bandwidth", UnsignedInt, kovaGetTR069BandwidthValue,
               "MHz", "Channel bandwidth, 0 while it is not known"),
    READ_ONLY (CELL "DLFrequency", UnsignedInt, kovaGetTR069DLFrequencyValue, "kHz", "Downlink carrier frequency"),
    READ_ONLY (CELL "ULFrequency", UnsignedInt, kovaGetTR069ULFrequencyValue, "kHz", "Uplink carrier frequency"),

    // Signal.
    READ_ONLY (CELL "RSSI", String, kovaGetTR069RSSIValue, "dBm", "Received power, or NONE"),
    READ_ONLY (CELL "RSRQ", String, kovaGetTR069RSRQValue, "dB", "Reference signal quality, or NONE"),
    READ_ONLY (CELL "SINR", String, kovaGetTR069SINRValue, "dB", "Signal to interference and noise, or NONE"),
    READ_ONLY (CELL "TXPower", String, kovaGetTR069TXPWRValue,
               "dBm", "Transmit power, capped by what spectrum access grants, or NONE"),
    READ_ONLY (CELL "RSRP0", String, kovaGetTR069RSRP0Value, "dBm", "Reference signal power of antenna 0"),
    READ_ONLY (CELL "RSRP1", String, kovaGetTR069RSRP1Value, "dBm", "Reference signal power of antenna 1"),
    READ_ONLY (CELL "CINR0", String, kovaGetTR069CINR0Value,
               "dB", "Carrier to interference and noise of antenna 0"),
    READ_ONLY (CELL "CINR1", String, kovaGetTR069CINR1Value,
               "dB", "Carrier to interference and noise of antenna 1"),
    READ_ONLY (CELL "CQI0", String, kovaGetTR069CQI0Value, "", "Channel quality of code word 0"),
    READ_ONLY (CELL "CQI1", String, kovaGetTR069CQI1Value, "", "Channel quality of code word 1"),
    READ_ONLY (CELL "DLMCS", String, kovaGetTR069DLMcsValue, "", "Downlink modulation and coding scheme"),
    READ_ONLY (CELL "ULMCS", String, kovaGetTR069ULMcsValue, "", "Uplink modulation and coding scheme"),
    READ_ONLY (CELL "DLBLER", String, kovaGetTR069WANDLBler, "", "Downlink block error rate"),

    // Traffic and rates. Those of the rate file are N/A when it is out of date.
    READ_ONLY (BEARER(1) "IPAddress", IPAddress, kovaGetTR069APN1IPAddress, "", "Address of the bearer, if it has one"),
    READ_ONLY (BEARER(2) "IPAddress", IPAddress, kovaGetTR069APN2IPAddress, "", "Address of the bearer, if it has one"),
    READ_ONLY (BEARER(3) "IPAddress", IPAddress, kovaGetTR069APN3IPAddress, "", "Address of the bearer, if it has one"),
    READ_ONLY (BEARER(4) "IPAddress", IPAddress, kovaGetTR069APN4IPAddress, "", "Address of the bearer, if it has one"),
    READ_ONLY (BEARER(1) "ReceiveRate", String, kovaGetTR069Apn1RecvRateValue, "bit/s", "Received now, or N/A"),
    READ_ONLY (BEARER(1) "SendRate", String, kovaGetTR069Apn1SendRateValue, "bit/s", "Sent now, or N/A"),
    READ_ONLY (BEARER(1) "BytesReceived", String, kovaGetTR069Apn1RecvTotTptValue, "bytes", "Received, or N/A"),
    READ_ONLY (BEARER(1) "BytesSent", String, kovaGetTR069Apn1SendTotTptValue, "bytes", "Sent, or N/A"),
    READ_ONLY (BEARER(1) "PacketsReceived", String, kovaGetTR069Apn1RecvTotPktValue, "packets", "Received, or N/A"),
    READ_ONLY (BEARER(1) "PacketsSent", String, kovaGetTR069Apn1SendTotPktValue, "packets", "Sent, or N/A"),
    READ_ONLY (TRAFFIC "RxPackets", UnsignedInt, kovaGetTR069RxPacketsValue,
               "packets", "Packet counter of the LTE interface"),
    READ_ONLY (TRAFFIC "TxPackets", UnsignedInt, kovaGetTR069TxPacketsValue,
               "packets", "Packet counter of the LTE interface"),
    READ_ONLY (TRAFFIC "RxBytes", UnsignedInt, kovaGetTR069RxBytesValue, "bytes", "Byte counter of the LTE interface"),
    READ_ONLY (TRAFFIC "TxBytes", UnsignedInt, kovaGetTR069TxBytesValue, "bytes", "Byte counter of the LTE interface"),
    READ_ONLY (RATE "DownlinkCurrent", String, kovaGetTR069WANDLCurRateValue, "bit/s", "Received now, or N/A"),
    READ_ONLY (RATE "DownlinkMinimum", String, kovaGetTR069WANDLMinRateValue,
               "bit/s", "Lowest of the samples, or N/A"),
    READ_ONLY (RATE "DownlinkMaximum", String, kovaGetTR069WANDLMaxRateValue,
               "bit/s", "Highest of the samples, or N/A"),
    READ_ONLY (RATE "UplinkCurrent", String, kovaGetTR069WANULCurRateValue, "bit/s", "Sent now, or N/A"),
    READ_ONLY (RATE "UplinkMinimum", String, kovaGetTR069WANULMinRateValue,
               "bit/s", "Lowest of the samples, or N/A"),
    READ_ONLY (RATE "UplinkMaximum", String, kovaGetTR069WANULMaxRateValue,
               "bit/s", "Highest of the samples, or N/A"),
    READ_ONLY (RATE "DownlinkScheduled", UnsignedInt, kovaGetTR069WANDownlinkRateValue,
               "bit/s", "What the cell schedules for this device; 0 while not connected"),
    READ_ONLY (RATE "UplinkScheduled", UnsignedInt, kovaGetTR069WANUplinkRateValue,
               "bit/s", "What the cell schedules for this device; 0 while not connected"),

    // Cell selection: what is set makes the LTE network be applied anew.
    READ_WRITE(SELECTION "ScanMode", String, kovaGetTR069ScanMode, kovaSetTR069ScanMode,
               "", "fullband, freqpreferred, pcilock or pcionlylock; anything else is accepted without effect"),
    CHECKED   (SELECTION "PCILock", String, kovaGetTR069PciLock, kovaSetTR069PciLock, kovaChkTR069PciLock,
               "", "Cells to camp on: EARFCN,PCI joined by a semicolon, 19 at most"),
    CHECKED   (SELECTION "PCIOnlyLock", String,
               kovaGetTR069PciOnlyLock, kovaSetTR069PciOnlyLock, kovaChkTR069PciOnlyLock,
               "", "PCI ranges to camp on: start,end joined by a semicolon; an empty set leaves them as they are"),
    CHECKED   (SELECTION "FrequencyPreferred", String,
               kovaGetTR069FreqPreferred, kovaSetTR069FreqPreferred, kovaChkTR069FreqPreferred,
               "", "Channels to prefer: band,EARFCN,EARFCN... joined by a semicolon"),
};
// clang-format on

} // namespace

std::span<const Parameter> radio_rows() {
  return rows;
}

} // namespace kova::model
