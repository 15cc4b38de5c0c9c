// The diagnostics tests' parameters. All live in the run-time section, one set for each management instance.
#include "src/diagnostics/udp_echo_statistics.hpp"
#include "src/frame/settings.hpp"
#include "src/frame/trace.hpp"
#include "src/transaction/park.hpp"

#include <kova/diagnostics.h>

#include <cstdlib>
#include <cstring>

namespace kova::diagnostics {

namespace {

int get(InstanceKey key, char *buf, unsigned int buflen) {
  return get_setting(Section::runtime, key.current(), buf, buflen);
}

int get_state(InstanceKey key, char *buf, unsigned int buflen) {
  const Text state = load(Section::runtime, key.current());
  return answer(state.empty() ? "None" : state, buf, buflen);
}

// The checkers and the batch validation have judged.
int set(InstanceKey key, const char *value) {
  store(Section::runtime, key.current(), text_or_empty(value));
  return 0;
}

int get_statistic(InstanceKey key, EchoStatistic statistic, char *buf, unsigned int buflen) {
  if (buf == nullptr || buflen == 0) return -1;
  const Text text = read_echo_statistic(statistic);
  store(Section::runtime, key.current(), text); // every read refreshes the stored copy
  return answer(text, buf, buflen);
}

// ---- What the checkers accept

bool any(const char *) {
  return true;
}
bool requested(const char *value) {
  return equal(value, "Requested");
}
bool zero_or_one(const char *value) {
  return is_zero_or_one(value);
}
bool digits_only(const char *value) {
  return value[std::strspn(value, "0123456789")] == '\0';
}
// An empty DSCP counts as 0.
bool dscp(const char *value) {
  return digits_only(value);
}
bool positive(const char *value) {
  return digits_only(value) && std::strtol(value, nullptr, 10) >= 1;
}
// The leading number counts: "5 times" is 5.
bool not_zero(const char *value) {
  return std::strtoul(value, nullptr, 10) != 0;
}
bool one_to_three(const char *value) {
  const long number = std::strtol(value, nullptr, 10);
  return number >= 1 && number <= 3;
}

bool accepts(bool (*allowed)(const char *), const char *value) {
  if (value != nullptr && allowed(value)) return true;
  dbg_trace("[TR069]set diagnostics Error, value(%s) error\n", text_or_empty(value));
  return false;
}

} // namespace

} // namespace kova::diagnostics

using namespace kova;
using namespace kova::diagnostics;

int chkTR069UDPEchoConfigEnable(const char *name, const char *value) {
  if (name == nullptr || !accepts(zero_or_one, value)) return -1;
  return park({gPVCL.udpEchoTouched, gPVCL.udpEchoEnable}, name, value);
}

#define GETTER(getter, key)                                                                                  \
  int getter(char *buf, unsigned int buflen) {                                                               \
    return get(KOVA_INSTANCE_KEY(key), buf, buflen);                                                         \
  }
#define STATE_GETTER(getter, key)                                                                            \
  int getter(char *buf, unsigned int buflen) {                                                               \
    return get_state(KOVA_INSTANCE_KEY(key), buf, buflen);                                                   \
  }
#define STATISTIC(getter, key, statistic)                                                                    \
  int getter(char *buf, unsigned int buflen) {                                                               \
    return get_statistic(KOVA_INSTANCE_KEY(key), EchoStatistic::statistic, buf, buflen);                     \
  }
#define SETTER(setter, key)                                                                                  \
  int setter(const char *value) {                                                                            \
    return set(KOVA_INSTANCE_KEY(key), value);                                                               \
  }
#define CHECKER(checker, allowed, touched, slot)                                                             \
  int checker(const char *name, const char *value) {                                                         \
    return accepts(allowed, value) ? park({gPVCL.touched, gPVCL.slot}, name, value) : -1;                    \
  }
// Judges its value, but takes no part in the group: the tool is not told of it.
#define LONE_CHECKER(checker, allowed)                                                                       \
  int checker(const char *, const char *value) {                                                             \
    return accepts(allowed, value) ? 0 : -1;                                                                 \
  }

// clang-format off
// Download test
STATE_GETTER(getTR069DownloadDiagnosticsState,             "TR_DLDIAG_STATE")             SETTER(setTR069DownloadDiagnosticsState,             "TR_DLDIAG_STATE")
GETTER(      getTR069DownloadDiagnosticsInterface,         "TR_DLDIAG_IF")                SETTER(setTR069DownloadDiagnosticsInterface,         "TR_DLDIAG_IF")
GETTER(      getTR069DownloadDiagnosticsURL,               "TR_DLDIAG_URL")               SETTER(setTR069DownloadDiagnosticsURL,               "TR_DLDIAG_URL")
GETTER(      getTR069DownloadDiagnosticsDSCP,              "TR_DLDIAG_DSCP")              SETTER(setTR069DownloadDiagnosticsDSCP,              "TR_DLDIAG_DSCP")
GETTER(      getTR069DownloadDiagnosticsROMTime,           "TR_DLDIAG_RTIME")             SETTER(setTR069DownloadDiagnosticsROMTime,           "TR_DLDIAG_RTIME")
GETTER(      getTR069DownloadDiagnosticsBOMTime,           "TR_DLDIAG_BTIME")             SETTER(setTR069DownloadDiagnosticsBOMTime,           "TR_DLDIAG_BTIME")
GETTER(      getTR069DownloadDiagnosticsEOMTime,           "TR_DLDIAG_ETIME")             SETTER(setTR069DownloadDiagnosticsEOMTime,           "TR_DLDIAG_ETIME")
GETTER(      getTR069DownloadDiagnosticsTestBytesReceived, "TR_DLDIAG_TESTRCVD")          SETTER(setTR069DownloadDiagnosticsTestBytesReceived, "TR_DLDIAG_TESTRCVD")
GETTER(      getTR069DownloadDiagnosticsTotalBytesReceived,"TR_DLDIAG_TOTALRCVD")         SETTER(setTR069DownloadDiagnosticsTotalBytesReceived,"TR_DLDIAG_TOTALRCVD")
GETTER(      getTR069DownloadDiagnosticsTCPOpenRequestTime,"TR_DLDIAG_TCPREQTIME")        SETTER(setTR069DownloadDiagnosticsTCPOpenRequestTime,"TR_DLDIAG_TCPREQTIME")
GETTER(      getTR069DownloadDiagnosticsTCPOpenResponseTime,"TR_DLDIAG_TCPRESTIME")        SETTER(setTR069DownloadDiagnosticsTCPOpenResponseTime,"TR_DLDIAG_TCPRESTIME")
CHECKER(     chkTR069DownloadDiagnosticsState,             requested,     downloadDiagTouched, dlState)
CHECKER(     chkTR069DownloadDiagnosticsInterface,         any,           downloadDiagTouched, dlInterface)
CHECKER(     chkTR069DownloadDiagnosticsURL,               any,           downloadDiagTouched, dlUrl)
CHECKER(     chkTR069DownloadDiagnosticsDSCP,              dscp,          downloadDiagTouched, dlDscp)

// Upload test
STATE_GETTER(getTR069UploadDiagnosticsState,               "TR_ULDIAG_STATE")             SETTER(setTR069UploadDiagnosticsState,               "TR_ULDIAG_STATE")
GETTER(      getTR069UploadDiagnosticsInterface,           "TR_ULDIAG_IF")                SETTER(setTR069UploadDiagnosticsInterface,           "TR_ULDIAG_IF")
GETTER(      getTR069UploadDiagnosticsURL,                 "TR_ULDIAG_URL")               SETTER(setTR069UploadDiagnosticsURL,                 "TR_ULDIAG_URL")
GETTER(      getTR069UploadDiagnosticsTestFileLength,      "TR_ULDIAG_FILE_LEN")          SETTER(setTR069UploadDiagnosticsTestFileLength,      "TR_ULDIAG_FILE_LEN")
GETTER(      getTR069UploadDiagnosticsDSCP,                "TR_ULDIAG_DSCP")              SETTER(setTR069UploadDiagnosticsDSCP,                "TR_ULDIAG_DSCP")
GETTER(      getTR069UploadDiagnosticsROMTime,             "TR_ULDIAG_RTIME")             SETTER(setTR069UploadDiagnosticsROMTime,             "TR_ULDIAG_RTIME")
GETTER(      getTR069UploadDiagnosticsBOMTime,             "TR_ULDIAG_BTIME")             SETTER(setTR069UploadDiagnosticsBOMTime,             "TR_ULDIAG_BTIME")
GETTER(      getTR069UploadDiagnosticsEOMTime,             "TR_ULDIAG_ETIME")             SETTER(setTR069UploadDiagnosticsEOMTime,             "TR_ULDIAG_ETIME")
GETTER(      getTR069UploadDiagnosticsTotalBytesSent,      "TR_ULDIAG_TOTALSENT")         SETTER(setTR069UploadDiagnosticsTotalBytesSent,      "TR_ULDIAG_TOTALSENT")
GETTER(      getTR069UploadDiagnosticsTCPOpenRequestTime,  "TR_ULDIAG_TCPREQTIME")        SETTER(setTR069UploadDiagnosticsTCPOpenRequestTime,  "TR_ULDIAG_TCPREQTIME")
GETTER(      getTR069UploadDiagnosticsTCPOpenResponseTime, "TR_ULDIAG_TCPRESTIME")        SETTER(setTR069UploadDiagnosticsTCPOpenResponseTime, "TR_ULDIAG_TCPRESTIME")
CHECKER(     chkTR069UploadDiagnosticsState,               requested,     uploadDiagTouched, ulState)
CHECKER(     chkTR069UploadDiagnosticsInterface,           any,           uploadDiagTouched, ulInterface)
CHECKER(     chkTR069UploadDiagnosticsURL,                 any,           uploadDiagTouched, ulUrl)
CHECKER(     chkTR069UploadDiagnosticsTestFileLength,      positive,      uploadDiagTouched, ulTestFileLength)
CHECKER(     chkTR069UploadDiagnosticsDSCP,                dscp,          uploadDiagTouched, ulDscp)

// UDP echo server
GETTER(      getTR069UDPEchoConfigEnable,                  "TR_UDPECHO_ENABLE")           SETTER(setTR069UDPEchoConfigEnable,                  "TR_UDPECHO_ENABLE")
GETTER(      getTR069UDPEchoConfigInterface,               "TR_UDPECHO_IF")               SETTER(setTR069UDPEchoConfigInterface,               "TR_UDPECHO_IF")
GETTER(      getTR069UDPEchoConfigSourceIPAddress,         "TR_UDPECHO_SIPADDR")          SETTER(setTR069UDPEchoConfigSourceIPAddress,         "TR_UDPECHO_SIPADDR")
GETTER(      getTR069UDPEchoConfigUDPPort,                 "TR_UDPECHO_PORT")             SETTER(setTR069UDPEchoConfigUDPPort,                 "TR_UDPECHO_PORT")
GETTER(      getTR069UDPEchoConfigEchoPlusEnabled,         "TR_UDPECHO_PLUS_ENABLE")      SETTER(setTR069UDPEchoConfigEchoPlusEnabled,         "TR_UDPECHO_PLUS_ENABLE")
CHECKER(     chkTR069UDPEchoConfigInterface,               any,           udpEchoTouched, udpEchoInterface)
CHECKER(     chkTR069UDPEchoConfigSourceIPAddress,         any,           udpEchoTouched, udpEchoSourceIp)
CHECKER(     chkTR069UDPEchoConfigUDPPort,                 positive,      udpEchoTouched, udpEchoPort)
CHECKER(     chkTR069UDPEchoConfigEchoPlusEnabled,         zero_or_one,   udpEchoTouched, udpEchoPlusEnabled)
KOVA_SETTING_GETTER(getTR069UDPEchoConfigEchoPlusSupported, Section::runtime, "TR_UDPECHO_PLUS_SUPPORTED") // of both instances
STATISTIC(   getTR069UDPEchoConfigPacketsReceived,         "TR_UDPECHO_PACKRECV", packets_received)
STATISTIC(   getTR069UDPEchoConfigPacketsResponded,        "TR_UDPECHO_PACKRESPD", packets_responded)
STATISTIC(   getTR069UDPEchoConfigBytesReceived,           "TR_UDPECHO_BYTERECV", bytes_received)
STATISTIC(   getTR069UDPEchoConfigBytesResponded,          "TR_UDPECHO_BYTERESPD", bytes_responded)
STATISTIC(   getTR069UDPEchoConfigTimeFirstPacketReceived, "TR_UDPECHO_FIPACKREDV", first_packet)
STATISTIC(   getTR069UDPEchoConfigTimeLastPacketReceived,  "TR_UDPECHO_LAPACKREDV", last_packet)

// Ping test
STATE_GETTER(getTR069IPPingDiagnosticsState,               "TR_PINGDIAG_STATE")           SETTER(setTR069IPPingDiagnosticsState,               "TR_PINGDIAG_STATE")
GETTER(      getTR069IPPingDiagnosticsInterface,           "TR_PINGDIAG_IF")              SETTER(setTR069IPPingDiagnosticsInterface,           "TR_PINGDIAG_IF")
GETTER(      getTR069IPPingDiagnosticsHost,                "TR_PINGDIAG_HOST")            SETTER(setTR069IPPingDiagnosticsHost,                "TR_PINGDIAG_HOST")
GETTER(      getTR069IPPingDiagnosticsCount,               "TR_PINGDIAG_CNT")             SETTER(setTR069IPPingDiagnosticsCount,               "TR_PINGDIAG_CNT")
GETTER(      getTR069IPPingDiagnosticsTimeout,             "TR_PINGDIAG_TIMEOUT")         SETTER(setTR069IPPingDiagnosticsTimeout,             "TR_PINGDIAG_TIMEOUT")
GETTER(      getTR069IPPingDiagnosticsDataSize,            "TR_PINGDIAG_DATA_SIZE")       SETTER(setTR069IPPingDiagnosticsDataSize,            "TR_PINGDIAG_DATA_SIZE")
GETTER(      getTR069IPPingDiagnosticsDSCP,                "TR_PINGDIAG_DSCP")            SETTER(setTR069IPPingDiagnosticsDSCP,                "TR_PINGDIAG_DSCP")
GETTER(      getTR069IPPingDiagnosticsSuccessCount,        "TR_PINGDIAG_SUC_CNT")         SETTER(setTR069IPPingDiagnosticsSuccessCount,        "TR_PINGDIAG_SUC_CNT")
GETTER(      getTR069IPPingDiagnosticsFailureCount,        "TR_PINGDIAG_FAI_CNT")         SETTER(setTR069IPPingDiagnosticsFailureCount,        "TR_PINGDIAG_FAI_CNT")
GETTER(      getTR069IPPingDiagnosticsAvgRsptime,          "TR_PINGDIAG_AVG_TIME")        SETTER(setTR069IPPingDiagnosticsAvgRsptime,          "TR_PINGDIAG_AVG_TIME")
GETTER(      getTR069IPPingDiagnosticsMinRsptime,          "TR_PINGDIAG_MIN_TIME")        SETTER(setTR069IPPingDiagnosticsMinRsptime,          "TR_PINGDIAG_MIN_TIME")
GETTER(      getTR069IPPingDiagnosticsMaxRsptime,          "TR_PINGDIAG_MAX_TIME")        SETTER(setTR069IPPingDiagnosticsMaxRsptime,          "TR_PINGDIAG_MAX_TIME")
CHECKER(     chkTR069IPPingDiagnosticsState,               requested,     ipPingTouched, pingState)
LONE_CHECKER(chkTR069IPPingDiagnosticsInterface,           any)
CHECKER(     chkTR069IPPingDiagnosticsHost,                any,           ipPingTouched, pingHost)
CHECKER(     chkTR069IPPingDiagnosticsCount,               not_zero,      ipPingTouched, pingCount)
CHECKER(     chkTR069IPPingDiagnosticsTimeout,             not_zero,      ipPingTouched, pingTimeout)
CHECKER(     chkTR069IPPingDiagnosticsDataSize,            not_zero,      ipPingTouched, pingDataSize)
LONE_CHECKER(chkTR069IPPingDiagnosticsDSCP,                dscp)

// Traceroute test
STATE_GETTER(getTR069TraceRouteDiagnosticsState,           "TR_TRACEROUTEDIAG_STATE")     SETTER(setTR069TraceRouteDiagnosticsState,           "TR_TRACEROUTEDIAG_STATE")
GETTER(      getTR069TraceRouteDiagnosticsInterface,       "TR_TRACEROUTEDIAG_IF")        SETTER(setTR069TraceRouteDiagnosticsInterface,       "TR_TRACEROUTEDIAG_IF")
GETTER(      getTR069TraceRouteDiagnosticsHost,            "TR_TRACEROUTEDIAG_HOST")      SETTER(setTR069TraceRouteDiagnosticsHost,            "TR_TRACEROUTEDIAG_HOST")
GETTER(      getTR069TraceRouteDiagnosticsTryCnt,          "TR_TRACEROUTEDIAG_TRYCNT")    SETTER(setTR069TraceRouteDiagnosticsTryCnt,          "TR_TRACEROUTEDIAG_TRYCNT")
GETTER(      getTR069TraceRouteDiagnosticsTimeout,         "TR_TRACEROUTEDIAG_TIMEOUT")   SETTER(setTR069TraceRouteDiagnosticsTimeout,         "TR_TRACEROUTEDIAG_TIMEOUT")
GETTER(      getTR069TraceRouteDiagnosticsDataSize,        "TR_TRACEROUTEDIAG_DATA_SIZE") SETTER(setTR069TraceRouteDiagnosticsDataSize,        "TR_TRACEROUTEDIAG_DATA_SIZE")
GETTER(      getTR069TraceRouteDiagnosticsDSCP,            "TR_TRACEROUTEDIAG_DSCP")      SETTER(setTR069TraceRouteDiagnosticsDSCP,            "TR_TRACEROUTEDIAG_DSCP")
GETTER(      getTR069TraceRouteDiagnosticsMaxHopCnt,       "TR_TRACEROUTEDIAG_MAX_HOPS")  SETTER(setTR069TraceRouteDiagnosticsMaxHopCnt,       "TR_TRACEROUTEDIAG_MAX_HOPS")
GETTER(      getTR069TraceRouteDiagnosticsRsptime,         "TR_TRACEROUTEDIAG_RSP_TIME")  SETTER(setTR069TraceRouteDiagnosticsRsptime,         "TR_TRACEROUTEDIAG_RSP_TIME")
GETTER(      getTR069TraceRouteDiagnosticsHopsNum,         "TR_TRACEROUTEDIAG_HOPS_NUM")  SETTER(setTR069TraceRouteDiagnosticsHopsNum,         "TR_TRACEROUTEDIAG_HOPS_NUM")
CHECKER(     chkTR069TraceRouteDiagnosticsState,           requested,     traceRouteTouched, trState)
LONE_CHECKER(chkTR069TraceRouteDiagnosticsInterface,       any)
CHECKER(     chkTR069TraceRouteDiagnosticsHost,            any,           traceRouteTouched, trHost)
CHECKER(     chkTR069TraceRouteDiagnosticsTryCnt,          one_to_three,  traceRouteTouched, trTryCount)
CHECKER(     chkTR069TraceRouteDiagnosticsTimeout,         not_zero,      traceRouteTouched, trTimeout)
CHECKER(     chkTR069TraceRouteDiagnosticsDataSize,        not_zero,      traceRouteTouched, trDataSize)
LONE_CHECKER(chkTR069TraceRouteDiagnosticsDSCP,            dscp)
CHECKER(     chkTR069TraceRouteDiagnosticsMaxHopCnt,       not_zero,      traceRouteTouched, trMaxHopCount)
