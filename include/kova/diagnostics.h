/* diagnostics: the download, upload, UDP echo, ping and traceroute tests.
 *
 * A request that sets a test's state to "Requested" starts it; any other accepted change to the test stops a
 * running one. Both are done by the batch validation. The tool writes its results, which are read here.
 * Setters store any text: the checkers judge. Each management instance has its own tests. */
#ifndef KOVA_DIAGNOSTICS_H
#define KOVA_DIAGNOSTICS_H

#include <kova/accessors.h>

KOVA_BEGIN_EXPORTS

/* ---- Download test ------------------------------------------------------------------------------------- */

/* State: set "Requested" to run; "None" until then. DSCP: digits. Times are date-times with microseconds,
 * counts are bytes. */
kova_getter getTR069DownloadDiagnosticsState, getTR069DownloadDiagnosticsInterface,
    getTR069DownloadDiagnosticsURL, getTR069DownloadDiagnosticsDSCP, getTR069DownloadDiagnosticsROMTime,
    getTR069DownloadDiagnosticsBOMTime, getTR069DownloadDiagnosticsEOMTime,
    getTR069DownloadDiagnosticsTestBytesReceived, getTR069DownloadDiagnosticsTotalBytesReceived,
    getTR069DownloadDiagnosticsTCPOpenRequestTime, getTR069DownloadDiagnosticsTCPOpenResponseTime;
kova_setter setTR069DownloadDiagnosticsState, setTR069DownloadDiagnosticsInterface,
    setTR069DownloadDiagnosticsURL, setTR069DownloadDiagnosticsDSCP, setTR069DownloadDiagnosticsROMTime,
    setTR069DownloadDiagnosticsBOMTime, setTR069DownloadDiagnosticsEOMTime,
    setTR069DownloadDiagnosticsTestBytesReceived, setTR069DownloadDiagnosticsTotalBytesReceived,
    setTR069DownloadDiagnosticsTCPOpenRequestTime, setTR069DownloadDiagnosticsTCPOpenResponseTime;
kova_checker chkTR069DownloadDiagnosticsState, chkTR069DownloadDiagnosticsInterface,
    chkTR069DownloadDiagnosticsURL, chkTR069DownloadDiagnosticsDSCP;

/* ---- Upload test --------------------------------------------------------------------------------------- */

/* TestFileLength: bytes to send, at least 1. */
kova_getter getTR069UploadDiagnosticsState, getTR069UploadDiagnosticsInterface, getTR069UploadDiagnosticsURL,
    getTR069UploadDiagnosticsTestFileLength, getTR069UploadDiagnosticsDSCP, getTR069UploadDiagnosticsROMTime,
    getTR069UploadDiagnosticsBOMTime, getTR069UploadDiagnosticsEOMTime,
    getTR069UploadDiagnosticsTotalBytesSent, getTR069UploadDiagnosticsTCPOpenRequestTime,
    getTR069UploadDiagnosticsTCPOpenResponseTime;
kova_setter setTR069UploadDiagnosticsState, setTR069UploadDiagnosticsInterface, setTR069UploadDiagnosticsURL,
    setTR069UploadDiagnosticsTestFileLength, setTR069UploadDiagnosticsDSCP, setTR069UploadDiagnosticsROMTime,
    setTR069UploadDiagnosticsBOMTime, setTR069UploadDiagnosticsEOMTime,
    setTR069UploadDiagnosticsTotalBytesSent, setTR069UploadDiagnosticsTCPOpenRequestTime,
    setTR069UploadDiagnosticsTCPOpenResponseTime;
kova_checker chkTR069UploadDiagnosticsState, chkTR069UploadDiagnosticsInterface, chkTR069UploadDiagnosticsURL,
    chkTR069UploadDiagnosticsTestFileLength, chkTR069UploadDiagnosticsDSCP;

/* ---- UDP echo server ----------------------------------------------------------------------------------- */

/* Enable: "1" runs the server, "0" stops it. The statistics are read from the server's file; "" without one.
 */
kova_getter getTR069UDPEchoConfigEnable, getTR069UDPEchoConfigInterface, getTR069UDPEchoConfigSourceIPAddress,
    getTR069UDPEchoConfigUDPPort, getTR069UDPEchoConfigEchoPlusEnabled,
    getTR069UDPEchoConfigEchoPlusSupported, getTR069UDPEchoConfigPacketsReceived,
    getTR069UDPEchoConfigPacketsResponded, getTR069UDPEchoConfigBytesReceived,
    getTR069UDPEchoConfigBytesResponded, getTR069UDPEchoConfigTimeFirstPacketReceived,
    getTR069UDPEchoConfigTimeLastPacketReceived;
kova_setter setTR069UDPEchoConfigEnable, setTR069UDPEchoConfigInterface, setTR069UDPEchoConfigSourceIPAddress,
    setTR069UDPEchoConfigUDPPort, setTR069UDPEchoConfigEchoPlusEnabled;
kova_checker chkTR069UDPEchoConfigEnable, chkTR069UDPEchoConfigInterface,
    chkTR069UDPEchoConfigSourceIPAddress, chkTR069UDPEchoConfigUDPPort, chkTR069UDPEchoConfigEchoPlusEnabled;

/* ---- Ping test ----------------------------------------------------------------------------------------- */

/* Interface and DSCP are checked and stored, but the test does not use them. Response times are milliseconds;
 * the tool takes Timeout as it is given. */
kova_getter getTR069IPPingDiagnosticsState, getTR069IPPingDiagnosticsInterface, getTR069IPPingDiagnosticsHost,
    getTR069IPPingDiagnosticsCount, getTR069IPPingDiagnosticsTimeout, getTR069IPPingDiagnosticsDataSize,
    getTR069IPPingDiagnosticsDSCP, getTR069IPPingDiagnosticsSuccessCount,
    getTR069IPPingDiagnosticsFailureCount, getTR069IPPingDiagnosticsAvgRsptime,
    getTR069IPPingDiagnosticsMinRsptime, getTR069IPPingDiagnosticsMaxRsptime;
kova_setter setTR069IPPingDiagnosticsState, setTR069IPPingDiagnosticsInterface, setTR069IPPingDiagnosticsHost,
    setTR069IPPingDiagnosticsCount, setTR069IPPingDiagnosticsTimeout, setTR069IPPingDiagnosticsDataSize,
    setTR069IPPingDiagnosticsDSCP, setTR069IPPingDiagnosticsSuccessCount,
    setTR069IPPingDiagnosticsFailureCount, setTR069IPPingDiagnosticsAvgRsptime,
    setTR069IPPingDiagnosticsMinRsptime, setTR069IPPingDiagnosticsMaxRsptime;
kova_checker chkTR069IPPingDiagnosticsState, chkTR069IPPingDiagnosticsInterface,
    chkTR069IPPingDiagnosticsHost, chkTR069IPPingDiagnosticsCount, chkTR069IPPingDiagnosticsTimeout,
    chkTR069IPPingDiagnosticsDataSize, chkTR069IPPingDiagnosticsDSCP;

/* ---- Traceroute test ----------------------------------------------------------------------------------- */

/* TryCnt: "1" .. "3". Timeout: milliseconds. Interface and DSCP are checked and stored, but the test does not
 * use them. */
kova_getter getTR069TraceRouteDiagnosticsState, getTR069TraceRouteDiagnosticsInterface,
    getTR069TraceRouteDiagnosticsHost, getTR069TraceRouteDiagnosticsTryCnt,
    getTR069TraceRouteDiagnosticsTimeout, getTR069TraceRouteDiagnosticsDataSize,
    getTR069TraceRouteDiagnosticsDSCP, getTR069TraceRouteDiagnosticsMaxHopCnt,
    getTR069TraceRouteDiagnosticsRsptime, getTR069TraceRouteDiagnosticsHopsNum;
kova_setter setTR069TraceRouteDiagnosticsState, setTR069TraceRouteDiagnosticsInterface,
    setTR069TraceRouteDiagnosticsHost, setTR069TraceRouteDiagnosticsTryCnt,
    setTR069TraceRouteDiagnosticsTimeout, setTR069TraceRouteDiagnosticsDataSize,
    setTR069TraceRouteDiagnosticsDSCP, setTR069TraceRouteDiagnosticsMaxHopCnt,
    setTR069TraceRouteDiagnosticsRsptime, setTR069TraceRouteDiagnosticsHopsNum;
kova_checker chkTR069TraceRouteDiagnosticsState, chkTR069TraceRouteDiagnosticsInterface,
    chkTR069TraceRouteDiagnosticsHost, chkTR069TraceRouteDiagnosticsTryCnt,
    chkTR069TraceRouteDiagnosticsTimeout, chkTR069TraceRouteDiagnosticsDataSize,
    chkTR069TraceRouteDiagnosticsDSCP, chkTR069TraceRouteDiagnosticsMaxHopCnt;

KOVA_END_EXPORTS

#endif
