// The diagnostics tests' parameters.
#include "fake/fake.hpp"

#include <kova/diagnostics.h>
#include <kova/transaction.h>

#include <algorithm>
#include <cstring>

using fake::get;
using fake::platform;
using fake::Strings;

namespace {

class Diagnostics : public fake::Test {};

// clang-format off
const struct Parameter {
  kova_getter *get;
  kova_setter *set;
  std::string key;
} parameters[] = {
#define P(name, key) {getTR069##name, setTR069##name, key}
#define DOWNLOAD(name, key) P(DownloadDiagnostics##name, "TR_DLDIAG_" key)
#define UPLOAD(name, key)   P(UploadDiagnostics##name, "TR_ULDIAG_" key)
#define ECHO(name, key)     P(UDPEchoConfig##name, "TR_UDPECHO_" key)
#define PING(name, key)     P(IPPingDiagnostics##name, "TR_PINGDIAG_" key)
#define TRACE(name, key)    P(TraceRouteDiagnostics##name, "TR_TRACEROUTEDIAG_" key)
    DOWNLOAD(State, "STATE"), DOWNLOAD(Interface, "IF"), DOWNLOAD(URL, "URL"), DOWNLOAD(DSCP, "DSCP"),
    DOWNLOAD(ROMTime, "RTIME"), DOWNLOAD(BOMTime, "BTIME"), DOWNLOAD(EOMTime, "ETIME"),
    DOWNLOAD(TestBytesReceived, "TESTRCVD"), DOWNLOAD(TotalBytesReceived, "TOTALRCVD"),
    DOWNLOAD(TCPOpenRequestTime, "TCPREQTIME"), DOWNLOAD(TCPOpenResponseTime, "TCPRESTIME"),
    UPLOAD(State, "STATE"), UPLOAD(Interface, "IF"), UPLOAD(URL, "URL"), UPLOAD(TestFileLength, "FILE_LEN"),
    UPLOAD(DSCP, "DSCP"), UPLOAD(ROMTime, "RTIME"), UPLOAD(BOMTime, "BTIME"), UPLOAD(EOMTime, "ETIME"),
    UPLOAD(TotalBytesSent, "TOTALSENT"), UPLOAD(TCPOpenRequestTime, "TCPREQTIME"), UPLOAD(TCPOpenResponseTime, "TCPRESTIME"),
    ECHO(Enable, "ENABLE"), ECHO(Interface, "IF"), ECHO(SourceIPAddress, "SIPADDR"), ECHO(UDPPort, "PORT"),
    ECHO(EchoPlusEnabled, "PLUS_ENABLE"),
    PING(State, "STATE"), PING(Interface, "IF"), PING(Host, "HOST"), PING(Count, "CNT"), PING(Timeout, "TIMEOUT"),
    PING(DataSize, "DATA_SIZE"), PING(DSCP, "DSCP"), PING(SuccessCount, "SUC_CNT"), PING(FailureCount, "FAI_CNT"),
    PING(AvgRsptime, "AVG_TIME"), PING(MinRsptime, "MIN_TIME"), PING(MaxRsptime, "MAX_TIME"),
    TRACE(State, "STATE"), TRACE(Interface, "IF"), TRACE(Host, "HOST"), TRACE(TryCnt, "TRYCNT"), TRACE(Timeout, "TIMEOUT"),
    TRACE(DataSize, "DATA_SIZE"), TRACE(DSCP, "DSCP"), TRACE(MaxHopCnt, "MAX_HOPS"), TRACE(Rsptime, "RSP_TIME"),
    TRACE(HopsNum, "HOPS_NUM")};

const std::pair<kova_getter *, std::string> statistics[] = {
    {getTR069UDPEchoConfigPacketsReceived,  "TR_UDPECHO_PACKRECV"}, {getTR069UDPEchoConfigPacketsResponded, "TR_UDPECHO_PACKRESPD"},
    {getTR069UDPEchoConfigBytesReceived,    "TR_UDPECHO_BYTERECV"}, {getTR069UDPEchoConfigBytesResponded,   "TR_UDPECHO_BYTERESPD"},
    {getTR069UDPEchoConfigTimeFirstPacketReceived, "TR_UDPECHO_FIPACKREDV"}, {getTR069UDPEchoConfigTimeLastPacketReceived, "TR_UDPECHO_LAPACKREDV"}};
// clang-format on

TEST_F(Diagnostics, AnInstanceTouchesNoKeyOfTheOther) {
  for (const bool secondary : {false, true}) {
    platform = {};
    gSecondaryInstance = secondary ? 1 : 0;
    for (const Parameter &parameter : parameters) {
      platform.nvram[{9, parameter.key}] = "of primary";
      platform.nvram[{9, "S_" + parameter.key}] = "of secondary";
    }
    for (const auto &[getter, key] : statistics)
      platform.nvram[{9, key}] = platform.nvram[{9, "S_" + key}] = "before";
    const fake::Store before = platform.nvram;

    for (const Parameter &parameter : parameters) {
      SCOPED_TRACE(parameter.key);
      EXPECT_EQ(get(parameter.get), secondary ? "of secondary" : "of primary");
      EXPECT_EQ(parameter.set(nullptr), 0);
      EXPECT_EQ(get(parameter.get), parameter.key.ends_with("_STATE") ? "None" : "");
      EXPECT_EQ(parameter.set(std::string(4000, 'x').c_str()), 0); // judged by the checker
      EXPECT_EQ(get(parameter.get), std::string(255, 'x'));
    }
    for (const auto &[getter, key] : statistics)
      EXPECT_EQ(get(getter), "");
    EXPECT_EQ(platform.nvram.size(), before.size());
    for (const auto &[key, value] : platform.nvram)
      EXPECT_EQ(value != before.at(key), key.second.starts_with("S_") == secondary) << key.second;
    for (const std::string &key : platform.keys_read)
      EXPECT_EQ(key.starts_with("9 S_TR_"), secondary) << key;
  }
  platform.preset(9, "TR_UDPECHO_PLUS_SUPPORTED=1 S_TR_UDPECHO_PLUS_SUPPORTED=0"); // one fact for both
  EXPECT_EQ(get(getTR069UDPEchoConfigEchoPlusSupported), "1");
}

TEST_F(Diagnostics, CheckersJudgeTheirValue) {
  const std::string huge = std::string(4000, '9');
  // clang-format off
  const struct {
    std::vector<kova_checker *> checkers;
    Strings passing, refused;
    int parks = 1; // 0: takes no part in its group
  } rules[] = {
      {{chkTR069DownloadDiagnosticsState, chkTR069UploadDiagnosticsState, chkTR069IPPingDiagnosticsState, chkTR069TraceRouteDiagnosticsState},
       {"Requested"}, {"None", "requested", "Requested ", ""}},
      {{chkTR069DownloadDiagnosticsInterface, chkTR069DownloadDiagnosticsURL, chkTR069UploadDiagnosticsInterface, chkTR069UploadDiagnosticsURL,
        chkTR069UDPEchoConfigInterface, chkTR069UDPEchoConfigSourceIPAddress, chkTR069IPPingDiagnosticsHost, chkTR069TraceRouteDiagnosticsHost},
       {"", "\"$(x)`", huge}, {}},
      {{chkTR069IPPingDiagnosticsInterface, chkTR069TraceRouteDiagnosticsInterface}, {"", "\"$(x)`", huge}, {}, 0},
      {{chkTR069DownloadDiagnosticsDSCP, chkTR069UploadDiagnosticsDSCP}, {"", "0", "007", huge}, {"-1", "1a", " 1"}},
      {{chkTR069IPPingDiagnosticsDSCP, chkTR069TraceRouteDiagnosticsDSCP}, {"", "0", "007", huge}, {"-1", "1a", " 1"}, 0},
      {{chkTR069UploadDiagnosticsTestFileLength, chkTR069UDPEchoConfigUDPPort}, {"1", "007", huge}, {"", "0", "000", "-1", "1a"}},
      {{chkTR069UDPEchoConfigEnable, chkTR069UDPEchoConfigEchoPlusEnabled}, {"0", "1"}, {"", "01", "2", "1 "}},
      {{chkTR069IPPingDiagnosticsCount, chkTR069IPPingDiagnosticsTimeout, chkTR069IPPingDiagnosticsDataSize,
        chkTR069TraceRouteDiagnosticsTimeout, chkTR069TraceRouteDiagnosticsDataSize, chkTR069TraceRouteDiagnosticsMaxHopCnt},
       {"1", "5abc", " 7", huge}, {"", "0", "00", "x", "0x1", "0 5"}},
      {{chkTR069TraceRouteDiagnosticsTryCnt}, {"1", "2", "3", "3x"}, {"", "0", "4", "-1", "x", "4294967297"}}};
  // clang-format on
  const auto parked = [] {
    return gPVCL.downloadDiagTouched + gPVCL.uploadDiagTouched + gPVCL.udpEchoTouched + gPVCL.ipPingTouched +
           gPVCL.traceRouteTouched;
  };
  for (const auto &[checkers, passing, refused, parks] : rules)
    for (kova_checker *check : checkers) {
      EXPECT_EQ(check("Name", nullptr), -1);
      for (const std::string &value : refused)
        EXPECT_EQ(check("Name", value.c_str()), -1) << value;
      EXPECT_EQ(parked(), 0);
      for (const std::string &value : passing)
        EXPECT_EQ(check("Name", value.c_str()), 0) << value;
      EXPECT_EQ(check(nullptr, passing[0].c_str()), check == chkTR069UDPEchoConfigEnable ? -1 : 0);
      EXPECT_EQ(parked(), parks);
      char names[4096] = "";
      kovaCheckTR069ParameterValues(names, sizeof names);
    }
}

// ---- Statistics of the echo server

std::string statistics_file(const std::string &first, const std::string &last) {
  const uint32_t counts[] = {1, 2, 4294967295U, 4};
  char file[152] = {};
  std::memcpy(file, counts, sizeof counts);
  std::copy(first.begin(), first.end(), file + 16);
  std::copy(last.begin(), last.end(), file + 80);
  return {file, sizeof file};
}

TEST_F(Diagnostics, StatisticsComeFromTheFileAndRefreshTheirKeys) {
  const std::string time = "2024-01-02T03:04:05.000006", f64(64, 'f'), l72(72, 'l'),
                    whole = statistics_file(time, "later"), full = statistics_file(f64, l72);
  const std::pair<std::string, Strings> cases[] = {
      {whole + "more", {"1", "2", "4294967295", "4", time, "later"}},
      {full, {"1", "2", "4294967295", "4", f64, l72}},
      {whole.substr(0, 20), {"1", "2", "4294967295", "4", "2024", ""}},
      {whole.substr(0, 4), {"1", "0", "0", "0", "", ""}},
      {"", {"", "", "", "", "", ""}}};
  for (const bool secondary : {false, true}) {
    gSecondaryInstance = secondary ? 1 : 0;
    platform.files["/tmp/sec_udpEchoServerStatistics"] = platform.files["/tmp/udpEchoServerStatistics"] =
        full;
    for (const auto &[file, expected] : cases) {
      platform.files[secondary ? "/tmp/sec_udpEchoServerStatistics" : "/tmp/udpEchoServerStatistics"] = file;
      for (std::size_t i = 0; i < std::size(statistics); ++i) {
        const auto &[getter, key] = statistics[i];
        EXPECT_EQ(get(getter), expected[i]) << file.size() << key;
        EXPECT_EQ(platform.stored(9, (secondary ? "S_" : "") + key), expected[i]);
      }
    }
    platform.files.clear();
    for (const auto &[getter, key] : statistics) {
      platform.done.clear();
      fake::expect_no_buffer_refused(getter);
      EXPECT_EQ(get(getter), "");
      EXPECT_EQ(platform.done, Strings{"nvram 9 " + std::string(secondary ? "S_" : "") + key + "="});
    }
  }
}

} // namespace
