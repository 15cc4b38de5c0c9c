// Results and error states of the tests, for both management instances.
#include "diag/agent.hpp"
#include "diag/http_server.hpp"
#include "platform/host/nvram_admin.hpp"
#include "support/match.hpp"

#include <algorithm>

namespace kova::test {
namespace {

const std::string ok = "HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n" + std::string(1000, 'x');

// Each is a date-time, and none is before the one ahead of it.
void expect_times_in_order(const std::vector<std::string> &keys) {
  std::string before = "2";
  for (const std::string &name : keys) {
    const std::string time = stored(name);
    EXPECT_TRUE(test::matches(time, R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{6}Z)")) << name << time;
    EXPECT_GE(time, before) << name;
    before = time;
  }
}

class Results : public Agent, public ::testing::WithParamInterface<bool> {};
INSTANTIATE_TEST_SUITE_P(Instances, Results, ::testing::Values(false, true),
                         [](const auto &instance) { return instance.param ? "Secondary" : "Primary"; });

// One request for all four tests.
TEST_P(Results, AreThoseOfTheWorkDone) {
  as_agent(GetParam(), [&] {
    HttpServer source(ok), sink("HTTP/1.1 201 Created\r\nContent-Length: 0\r\n\r\n");
    request({SETTING(IPPingDiagnosticsHost, "localhost"), SETTING(IPPingDiagnosticsCount, "2"),
             SETTING(IPPingDiagnosticsState, "Requested"), SETTING(TraceRouteDiagnosticsHost, "127.0.0.1"),
             SETTING(TraceRouteDiagnosticsState, "Requested"), SETTING(DownloadDiagnosticsURL, source.url()),
             SETTING(DownloadDiagnosticsDSCP, "10"), SETTING(DownloadDiagnosticsInterface, "lo"),
             SETTING(DownloadDiagnosticsState, "Requested"), SETTING(UploadDiagnosticsURL, sink.url("/put")),
             SETTING(UploadDiagnosticsTestFileLength, "70000"),
             SETTING(UploadDiagnosticsState, "Requested")});

    EXPECT_EQ(end_state("DLDIAG"), "Complete");
    expect_times_in_order(
        {"DLDIAG_TCPREQTIME", "DLDIAG_TCPRESTIME", "DLDIAG_RTIME", "DLDIAG_BTIME", "DLDIAG_ETIME"});
    EXPECT_EQ(stored("DLDIAG_TESTRCVD"), std::to_string(ok.size()));
    EXPECT_GE(std::stoul(stored("DLDIAG_TOTALRCVD")), ok.size());
    EXPECT_TRUE(source.request().starts_with("GET / HTTP/1.1\r\n")) << source.request();

    EXPECT_EQ(end_state("ULDIAG"), "Complete");
    expect_times_in_order(
        {"ULDIAG_TCPREQTIME", "ULDIAG_TCPRESTIME", "ULDIAG_RTIME", "ULDIAG_BTIME", "ULDIAG_ETIME"});
    EXPECT_GE(std::stoul(stored("ULDIAG_TOTALSENT")), sink.request().size());
    EXPECT_TRUE(sink.request().starts_with("PUT /put HTTP/1.1\r\n"));
    EXPECT_EQ(std::ranges::count(sink.request(), 'k'), 70000);

    EXPECT_EQ(end_state("TRACEROUTEDIAG"), "Complete");
    EXPECT_EQ(stored("TRACEROUTEDIAG_HOPS_NUM"), "1");
    EXPECT_EQ(host::nvram_find(0, "ROUTEHOPS_HOPHOST"), "127.0.0.1");
    EXPECT_TRUE(fs::exists(device_.directory() / ("root/tmp/" + tool("tracerouteResults"))));

    EXPECT_EQ(end_state("PINGDIAG"), "Complete");
    EXPECT_EQ(stored("PINGDIAG_SUC_CNT") + "+" + stored("PINGDIAG_FAI_CNT"), "2+0");
    EXPECT_LE(std::stoul(stored("PINGDIAG_MIN_TIME")), std::stoul(stored("PINGDIAG_MAX_TIME")));
    EXPECT_TRUE(comes_into_log(tool("ping_diag") + " ended with status 0"));

    const std::string own = gSecondaryInstance != 0 ? "S_TR_" : "TR_";
    for (const auto &entry : host::nvram_entries(9)) {
      const bool is_result = entry.key.find("DIAG_") != std::string::npos;
      EXPECT_TRUE(!is_result || entry.key.starts_with(own)) << entry.key;
    }
  });
}

TEST_F(Agent, AFailureLeavesItsStateAndNoResults) {
  as_agent(true, [&] {
    HttpServer silent(""), refusing("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n"),
        foreign("hello\r\n"), closed("HTTP/1.1 401 Unauthorized\r\nContent-Length: 0\r\n\r\n"),
        cut("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nabc");
    const std::string no_host(70, 'a'); // longer than a part of a name can be: no server is asked
    const std::string down = "/bin/" + tool("download_diag -u "),
                      up = "/bin/" + tool("upload_diag -l 10 -u ");
    struct Case {
      void (*launch)(const char *);
      std::string test, line, state;
    };
    const std::vector<Case> cases{
        {mrhd_launch_dlDiag, "DLDIAG", down + "http://127.0.0.1:1/", "Error_InitConnectionFailed"},
        {mrhd_launch_dlDiag, "DLDIAG", down + "http://" + no_host + "/", "Error_CannotResolveHostName"},
        {mrhd_launch_dlDiag, "DLDIAG", down + silent.url(), "Error_NoResponse"},
        {mrhd_launch_dlDiag, "DLDIAG", down + refusing.url(), "Error_TransferFailed"},
        {mrhd_launch_dlDiag, "DLDIAG", down + closed.url(), "Error_LoginFailed"},
        {mrhd_launch_dlDiag, "DLDIAG", down + cut.url(), "Error_TransferFailed"},
        {mrhd_launch_dlDiag, "DLDIAG", down + "ftp://127.0.0.1/", "Error_Other"},
        {mrhd_launch_dlDiag, "DLDIAG", down + silent.url() + " -i no_such_if", "Error_Other"},
        {mrhd_launch_ulDiag, "ULDIAG", up + foreign.url(), "Error_TransferFailed"},
        {mrhd_launch_pingDiag, "PINGDIAG", "/bin/" + tool("ping_diag -c 1 -W 1 -s 56 -H ") + no_host,
         "Error_CannotResolveHostName"},
        {mrhd_launch_pingDiag, "PINGDIAG", "/bin/" + tool("ping_diag -c 1 -W 1 -s 65508 -H 127.0.0.1"),
         "Error_Other"},
        {mrhd_launch_tracerouteDiag, "TRACEROUTEDIAG",
         "/bin/" + tool("traceroute_diag ") + no_host + " 38 -q 1 -m 2 -w 1,3,10",
         "Error_CannotResolveHostName"},
    };
    for (const Case &one : cases) {
      store("DLDIAG_TESTRCVD", "123");
      store("PINGDIAG_SUC_CNT", "123");
      nvram_bufset(0, "ROUTEHOPS_HOPHOST", "192.0.2.1");
      store(one.test + "_STATE", "None");
      one.launch(one.line.c_str());
      store(one.test + "_STATE", "Requested");
      EXPECT_EQ(end_state(one.test), one.state) << one.line;
      EXPECT_TRUE(one.test != "DLDIAG" || stored("DLDIAG_TESTRCVD") == "0");
      EXPECT_TRUE(one.test != "DLDIAG" || stored("DLDIAG_ETIME") == "0001-01-01T00:00:00Z");
      EXPECT_TRUE(one.test != "PINGDIAG" || stored("PINGDIAG_SUC_CNT") == "0");
      EXPECT_EQ(host::nvram_find(0, "ROUTEHOPS_HOPHOST"), one.test == "TRACEROUTEDIAG" ? "" : "192.0.2.1");
    }
    EXPECT_TRUE(is_logged(tool("ping_diag") + ": Error_CannotResolveHostName: aaa"));
  });
}

TEST_F(Agent, AHostWithoutTheProgramIsAnInternalErrorAndLogged) {
  as_agent(false, [&] {
    device::down();
    setenv("PATH", device_.top().c_str(), 1);
    device::up();
    request({SETTING(IPPingDiagnosticsHost, "127.0.0.1"), SETTING(IPPingDiagnosticsState, "Requested")});
    EXPECT_EQ(end_state("PINGDIAG"), "Error_Internal");
    EXPECT_TRUE(is_logged("ping_diag: Error_Internal: this host has no program ping"));
  });
}

} // namespace
} // namespace kova::test
