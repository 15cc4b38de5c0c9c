// Waiting for diagnostics tests. The test plays the device's programs: it writes what they would.
#include "kovactl.hpp"

#include <csignal>

namespace kova::e2e {
namespace {

const std::string ping = "InternetGatewayDevice.IPPingDiagnostics.";
const std::string route = "InternetGatewayDevice.TraceRouteDiagnostics.";

class Waiting : public Kovactl {
protected:
  void SetUp() override {
    Kovactl::SetUp();
    run({"device", "up"});
    replace_program("root/bin/ping_diag", "exit 0");
    replace_program("root/bin/traceroute_diag", "exit 0");
  }

  static Words request(Words options = {}, const std::string &object = ping) {
    options.insert(options.begin(), {"set", "--wait"});
    for (const char *assignment : {"Host=127.0.0.1", "DiagnosticsState=Requested"})
      options.push_back(object + assignment);
    return options;
  }
  // Waits until the test has been asked for.
  static std::string once_requested(const std::string &state_key) {
    return "for i in $(seq 1000); do " + command_line({"nvram", "get", "-s", "9", state_key}) +
           " 2>/dev/null | grep -q Requested && break; sleep 0.05; done; ";
  }
  // Then stores its end.
  static std::string tool(const std::string &state_key, const std::string &state) {
    return once_requested(state_key) + command_line({"nvram", "set", "-s", "9", state_key + "=" + state}) +
           " >/dev/null";
  }
  Result run_with(const std::string &tool, const Words &words) const {
    return shell("{ " + tool + "; } & " + command_line(words) + "; status=$?; wait; exit $status");
  }
};

TEST_F(Waiting, ShowsTheResultsOfEveryTest) {
  Words words = request({"--json"});
  for (const char *assignment : {"Host=127.0.0.1", "DiagnosticsState=Requested"})
    words.push_back(route + assignment);
  const Result result = run_with(tool("TR_PINGDIAG_STATE", "Complete") + "; " +
                                     tool("TR_TRACEROUTEDIAG_STATE", "Error_MaxHopCountExceeded"),
                                 words);
  EXPECT_EQ(result.status, 1) << "one of them failed";
  EXPECT_EQ(result.err, "") << "no progress without a terminal";
  const Json answer = Json::parse(result.out);
  ASSERT_EQ(answer["tests"].size(), 2U);
  const Json &first = answer["tests"][0], &second = answer["tests"][1];
  EXPECT_EQ(first["object"], ping);
  EXPECT_EQ(first["state"], "Complete");
  EXPECT_EQ(first["parameters"].size(), json({"get", ping})["parameters"].size());
  EXPECT_EQ(second["object"], route);
  EXPECT_EQ(second["state"], "Error_MaxHopCountExceeded");
  EXPECT_EQ(second["error"], "TraceRouteDiagnostics ended in Error_MaxHopCountExceeded");
  EXPECT_EQ(answer["parameters"].size(), 4U);
}

TEST_F(Waiting, EndsWellOnlyWithResults) {
  const Result good = run_with(tool("TR_PINGDIAG_STATE", "Complete"), request());
  EXPECT_EQ(good.status, 0) << good.err;
  EXPECT_NE(good.out.find("SuccessCount"), std::string::npos) << good.out;
  EXPECT_EQ(good.out.find(ping + "Host"), good.out.rfind(ping + "Host")) << "shown twice:\n" << good.out;

  const Result bad = run_with(tool("TR_PINGDIAG_STATE", "Error_CannotResolveHostName"), request());
  EXPECT_EQ(bad.status, 1);
  EXPECT_EQ(bad.err, "kovactl: IPPingDiagnostics ended in Error_CannotResolveHostName\n");
  EXPECT_NE(bad.out.find("SuccessCount"), std::string::npos) << "the object is shown all the same";
  const Result late = run(request({"--timeout", "0"}));
  EXPECT_EQ(late.status, 1);
  EXPECT_NE(late.err.find("IPPingDiagnostics is still Requested"), std::string::npos) << late.err;

  const Result refused = run(request({ping + "NumberOfRepetitions=0"}));
  EXPECT_EQ(refused.status, 1);
  EXPECT_NE(refused.err.find("nothing was stored"), std::string::npos) << refused.err;
}

TEST_F(Waiting, WatchesTheOtherInstanceToo) {
  Words words = request();
  words.insert(words.begin(), "--secondary");
  EXPECT_EQ(run_with(tool("S_TR_PINGDIAG_STATE", "Complete"), words).status, 0);
}

TEST_F(Waiting, NeedsTheServiceDaemon) {
  const pid_t daemon = json({"device", "status"})["serviced"];
  const Result gone =
      run_with(once_requested("TR_PINGDIAG_STATE") + "kill -9 " + std::to_string(daemon), request());
  EXPECT_EQ(gone.status, 1);
  EXPECT_NE(gone.err.find("daemon is gone"), std::string::npos) << gone.err;

  json({"nvram", "unset", "-s", "9", "TR_PINGDIAG_STATE"});
  const Json answer = json(request(), 1);
  EXPECT_EQ(answer["error"].get<std::string>().find("no service daemon is running: the test will not start"),
            0U);
  EXPECT_EQ(value(ping + "DiagnosticsState"), "None") << "nothing was stored";
  EXPECT_EQ(run({"set", "--wait", ping + "Host=a"}).status, 0) << "there is no test to wait for";
}

} // namespace
} // namespace kova::e2e
