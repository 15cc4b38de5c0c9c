#include "model/rows.hpp"

#include <kova/diagnostics.h>

namespace kova::model {
namespace {

// clang-format off
#define DOWNLOAD   "InternetGatewayDevice.DownloadDiagnostics."
#define UPLOAD     "InternetGatewayDevice.UploadDiagnostics."
#define UDPECHO    "InternetGatewayDevice.UDPEchoConfig."
#define PING       "InternetGatewayDevice.IPPingDiagnostics."
#define TRACEROUTE "InternetGatewayDevice.TraceRouteDiagnostics."

// The parameters of a test, what it found, and what the echo server counts.
#define INPUT(path, type, field, unit, meaning) \
    CHECKED(path, type, getTR069##field, setTR069##field, chkTR069##field, unit, meaning)
#define OUTCOME(path, type, field, unit, meaning) RESULT(path, type, getTR069##field, setTR069##field, unit, meaning)
#define STATISTIC(path, type, field, unit, meaning) READ_ONLY(path, type, getTR069##field, unit, meaning)

constexpr Parameter rows[] = {
    INPUT  (DOWNLOAD "DiagnosticsState", String, DownloadDiagnosticsState,
            "", "Set to Requested to run the test; None before the first"),
    INPUT  (DOWNLOAD "Interface", String, DownloadDiagnosticsInterface, "", "Interface to use; may be empty"),
    INPUT  (DOWNLOAD "DownloadURL", String, DownloadDiagnosticsURL, "", "What to download"),
    INPUT  (DOWNLOAD "DSCP", UnsignedInt, DownloadDiagnosticsDSCP, "", "Code point of the packets; may be empty"),
    OUTCOME(DOWNLOAD "ROMTime", DateTime, DownloadDiagnosticsROMTime, "", "When the request was sent"),
    OUTCOME(DOWNLOAD "BOMTime", DateTime, DownloadDiagnosticsBOMTime, "", "When the first data came"),
    OUTCOME(DOWNLOAD "EOMTime", DateTime, DownloadDiagnosticsEOMTime, "", "When the last data came"),
    OUTCOME(DOWNLOAD "TestBytesReceived", UnsignedInt, DownloadDiagnosticsTestBytesReceived,
            "bytes", "Received from BOMTime to EOMTime, headers included"),
    OUTCOME(DOWNLOAD "TotalBytesReceived", UnsignedInt, DownloadDiagnosticsTotalBytesReceived,
            "bytes", "Received by the interface from BOMTime to EOMTime"),
    OUTCOME(DOWNLOAD "TCPOpenRequestTime", DateTime, DownloadDiagnosticsTCPOpenRequestTime,
            "", "When the connection was asked for"),
    OUTCOME(DOWNLOAD "TCPOpenResponseTime", DateTime, DownloadDiagnosticsTCPOpenResponseTime,
            "", "When the connection was granted"),

    INPUT  (UPLOAD "DiagnosticsState", String, UploadDiagnosticsState,
            "", "Set to Requested to run the test; None before the first"),
    INPUT  (UPLOAD "Interface", String, UploadDiagnosticsInterface, "", "Interface to use; may be empty"),
    INPUT  (UPLOAD "UploadURL", String, UploadDiagnosticsURL, "", "Where to upload to"),
    INPUT  (UPLOAD "DSCP", UnsignedInt, UploadDiagnosticsDSCP, "", "Code point of the packets; may be empty"),
    INPUT  (UPLOAD "TestFileLength", UnsignedInt, UploadDiagnosticsTestFileLength, "bytes", "What to upload, 1 or more"),
    OUTCOME(UPLOAD "ROMTime", DateTime, UploadDiagnosticsROMTime, "", "When the request was sent"),
    OUTCOME(UPLOAD "BOMTime", DateTime, UploadDiagnosticsBOMTime, "", "When the first data went out"),
    OUTCOME(UPLOAD "EOMTime", DateTime, UploadDiagnosticsEOMTime, "", "When the answer came"),
    OUTCOME(UPLOAD "TotalBytesSent", UnsignedInt, UploadDiagnosticsTotalBytesSent,
            "bytes", "Sent by the interface from BOMTime to EOMTime"),
    OUTCOME(UPLOAD "TCPOpenRequestTime", DateTime, UploadDiagnosticsTCPOpenRequestTime,
            "", "When the connection was asked for"),
    OUTCOME(UPLOAD "TCPOpenResponseTime", DateTime, UploadDiagnosticsTCPOpenResponseTime,
            "", "When the connection was granted"),

    INPUT  (UDPECHO "Enable", Boolean, UDPEchoConfigEnable, "", "1 runs the echo server, 0 stops it"),
    INPUT  (UDPECHO "Interface", String, UDPEchoConfigInterface, "", "Interface to listen on; may be empty"),
    INPUT  (UDPECHO "SourceIPAddress", IPAddress, UDPEchoConfigSourceIPAddress,
            "", "Only packets from this address are answered; may be empty"),
    INPUT  (UDPECHO "UDPPort", UnsignedInt, UDPEchoConfigUDPPort, "", "Port to listen on"),
    INPUT  (UDPECHO "EchoPlusEnabled", Boolean, UDPEchoConfigEchoPlusEnabled, "", "Whether answers carry times and counts"),
    STATISTIC(UDPECHO "EchoPlusSupported", Boolean, UDPEchoConfigEchoPlusSupported,
            "", "Whether EchoPlusEnabled has an effect"),
    STATISTIC(UDPECHO "PacketsReceived", UnsignedInt, UDPEchoConfigPacketsReceived, "packets", "Packets to be answered"),
    STATISTIC(UDPECHO "PacketsResponded", UnsignedInt, UDPEchoConfigPacketsResponded, "packets", "Packets answered"),
    STATISTIC(UDPECHO "BytesReceived", UnsignedInt, UDPEchoConfigBytesReceived, "bytes", "Payload to be answered"),
    STATISTIC(UDPECHO "BytesResponded", UnsignedInt, UDPEchoConfigBytesResponded, "bytes", "Payload answered"),
    STATISTIC(UDPECHO "TimeFirstPacketReceived", DateTime, UDPEchoConfigTimeFirstPacketReceived,
            "", "When the first packet came"),
    STATISTIC(UDPECHO "TimeLastPacketReceived", DateTime, UDPEchoConfigTimeLastPacketReceived,
            "", "When the last packet came"),

    INPUT  (PING "DiagnosticsState", String, IPPingDiagnosticsState,
            "", "Set to Requested to run the test; None before the first"),
    INPUT  (PING "Interface", String, IPPingDiagnosticsInterface, "", "Kept, but not used by the test"),
    INPUT  (PING "Host", String, IPPingDiagnosticsHost, "", "Host to ping"),
    INPUT  (PING "NumberOfRepetitions", UnsignedInt, IPPingDiagnosticsCount, "", "How many packets to send"),
    INPUT  (PING "Timeout", UnsignedInt, IPPingDiagnosticsTimeout, "ms", "How long to wait for an answer"),
    INPUT  (PING "DataBlockSize", UnsignedInt, IPPingDiagnosticsDataSize, "bytes", "Payload of a packet"),
    INPUT  (PING "DSCP", UnsignedInt, IPPingDiagnosticsDSCP, "", "Kept, but not used by the test"),
    OUTCOME(PING "SuccessCount", UnsignedInt, IPPingDiagnosticsSuccessCount, "packets", "Packets that were answered"),
    OUTCOME(PING "FailureCount", UnsignedInt, IPPingDiagnosticsFailureCount, "packets", "Packets that were not answered"),
    OUTCOME(PING "AverageResponseTime", UnsignedInt, IPPingDiagnosticsAvgRsptime, "ms", "Average time to the answer"),
    OUTCOME(PING "MinimumResponseTime", UnsignedInt, IPPingDiagnosticsMinRsptime, "ms", "Shortest time to the answer"),
    OUTCOME(PING "MaximumResponseTime", UnsignedInt, IPPingDiagnosticsMaxRsptime, "ms", "Longest time to the answer"),

    INPUT  (TRACEROUTE "DiagnosticsState", String, TraceRouteDiagnosticsState,
            "", "Set to Requested to run the test; None before the first"),
    INPUT  (TRACEROUTE "Interface", String, TraceRouteDiagnosticsInterface, "", "Kept, but not used by the test"),
    INPUT  (TRACEROUTE "Host", String, TraceRouteDiagnosticsHost, "", "Host to which the route is sought"),
    INPUT  (TRACEROUTE "NumberOfTries", UnsignedInt, TraceRouteDiagnosticsTryCnt, "", "Packets for each hop, 1 to 3"),
    INPUT  (TRACEROUTE "Timeout", UnsignedInt, TraceRouteDiagnosticsTimeout, "ms", "How long to wait for a hop's answer"),
    INPUT  (TRACEROUTE "DataBlockSize", UnsignedInt, TraceRouteDiagnosticsDataSize, "bytes", "Payload of a packet"),
    INPUT  (TRACEROUTE "DSCP", UnsignedInt, TraceRouteDiagnosticsDSCP, "", "Kept, but not used by the test"),
    INPUT  (TRACEROUTE "MaxHopCount", UnsignedInt, TraceRouteDiagnosticsMaxHopCnt, "", "After how many hops to give up"),
    OUTCOME(TRACEROUTE "ResponseTime", UnsignedInt, TraceRouteDiagnosticsRsptime, "ms", "Time to the host's answer"),
    OUTCOME(TRACEROUTE "RouteHopsNumberOfEntries", UnsignedInt, TraceRouteDiagnosticsHopsNum, "", "Hops of the route"),
};
// clang-format on

} // namespace

std::span<const Parameter> diagnostics_rows() {
  return rows;
}

} // namespace kova::model
