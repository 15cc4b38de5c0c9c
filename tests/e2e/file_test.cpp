// Requests from a file or standard input.
#include "kovactl.hpp"

#include <algorithm>

namespace kova::e2e {
namespace {

const std::string ping = "InternetGatewayDevice.IPPingDiagnostics.";

using RequestFile = Kovactl;

TEST_F(RequestFile, HoldsLinesOrJson) {
  const struct {
    std::string text, host, dscp;
  } cases[] = {
      {"# lines\n\n" + ping + "Host= a=b \r\n \t\r\n" + ping + "DSCP=7", " a=b ", "7"},
      {"\xEF\xBB\xBF" + ping + "Host=\n" + ping + "DSCP=1\n" + ping + "DSCP=8\n", "", "8"},
      {"\n {\"" + ping + "Host\": \"a\\u00e4\\n\", \"" + ping + "DSCP\": 1, \"" + ping + "DSCP\": 9}",
       "a\u00e4\n", "9"},
      {R"([{"path": ")" + ping + R"(DSCP", "value": 10}, {"value": 1.50, "type": "x", "path": ")" + ping +
           "Host\"}]",
       "1.50", "10"},
      {R"({"parameters": [{"path": ")" + ping + R"(Host", "value": "h"}, {"path": ")" + ping +
           R"(DSCP", "type": "x", "value": "11"}]})",
       "h", "11"},
      {"{\"" + ping + "Host\": true, \"" + ping + "DSCP\": 010}", "", ""},
  };
  for (const auto &[text, host, dscp] : cases) {
    SCOPED_TRACE(text);
    const std::string request = file("request", text);
    if (dscp.empty()) {
      json({"set", "--file", request}, 2);
      continue;
    }
    json({"set", "--file", request});
    EXPECT_EQ(value(ping + "Host"), host);
    EXPECT_EQ(value(ping + "DSCP"), dscp);
  }
  shell("printf '%s\\n' " + ping + "Host=one " + ping + "DSCP=1 | " +
        command_line({"set", "--file", "-", ping + "DSCP=2"}));
  EXPECT_EQ(value(ping + "Host"), "one");
  EXPECT_EQ(value(ping + "DSCP"), "2") << "what the command line says comes last";
}

TEST_F(RequestFile, IsRefusedWithItsLine) {
  const struct {
    std::string text, line;
  } cases[] = {
      {"A.B=1\n\nC.D\n", ":3: "},
      {"=1", ":1: "},
      {std::string("A=1\nA=\0", 7), ":2: "},
      {"{\"A\": 1,\n \"B\":\n null}", ":3: "},
      {"{\"A\": [1]}", ":1: "},
      {"{\"A\": \"\xff\"}", ":1: "},
      {"{\"A\": 1}\n\nB=1", ":3: "},
      {"[{\"path\": \"A\",\n \"value\": \"1\"},\n{\"path\": \"B\"}\n]", ":3: "},
      {"# nothing\n", ""},
  };
  for (const auto &[text, line] : cases) {
    const std::string request = file("request", text);
    const Result result = run({"set", "--file", request});
    EXPECT_EQ(result.status, 2) << text;
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err.find(line.empty() ? "sets nothing" : request + line), std::string::npos)
        << text << "\n"
        << result.err;
  }
  for (const std::string &nothing : {(directory() / "missing").string(), directory().string()})
    EXPECT_NE(run({"set", "--file", nothing}).err.find(nothing), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(device())) << "nothing was done";
}

// What one device exports another takes, with the rows of its lists, and then exports the same: in one request, on top
// of which the tests run.
TEST_F(RequestFile, CarriesTheWholeDevice) {
  const std::string routes = "InternetGatewayDevice.Layer3Forwarding.X_KOVA_Route.";
  json({"add", routes, "192.168.1.2,10.1.0.0,255.255.0.0,0"});
  json({"set", ping + "DSCP=7", "InternetGatewayDevice.UserInterface.X_KOVA_UserPassword=Corr3ct horse"});
  // What opens others, and what is set only together with others.
  json({"set", "X_KOVA_WANSetting.OperMode=2", "X_KOVA_WANSetting.VPNType=1"});
  json({"set", "X_KOVA_OperMode.GREDestIPAddress=9.8.7.6", "X_KOVA_SNMP.Enable=1",
        "X_KOVA_LAN.DHCPServerEnable=0", "X_KOVA_LAN.IPAddress=10.7.7.1", "X_KOVA_LAN.DHCPPoolStart=10.7.7.9",
        "X_KOVA_LAN.DHCPPoolEnd=10.7.7.10"});
  Json request = json({"export"});
  const std::string lines = run({"export"}).out, other = (directory() / "other").string();
  EXPECT_GT(request.size(), 180U);
  EXPECT_EQ(lines.find("Password"), std::string::npos);
  EXPECT_NE(lines.find("# left out: "), std::string::npos);
  const auto on_other = [&](Words words) {
    words.insert(words.begin(), {"--device", other});
    return run(words);
  };
  EXPECT_EQ(on_other({"set", "--file", file("lines", lines)}).status, 0);
  EXPECT_EQ(on_other({"export"}).out, lines);
  EXPECT_NE(on_other({"get", "-v", "DeviceInfo.SerialNumber"}).out,
            run({"get", "-v", "DeviceInfo.SerialNumber"}).out);
  on_other({"device", "remove"});
  EXPECT_FALSE(std::filesystem::exists(other));

  for (const char *test : {"download", "upload", "ping", "traceroute"})
    replace_program(std::string("root/bin/") + test + "_diag", "exit 0");
  for (const char *object : {"Download", "Upload", "IPPing", "TraceRoute"})
    request.push_back(
        {{"path", std::string("InternetGatewayDevice.") + object + "Diagnostics.DiagnosticsState"},
         {"value", "Requested"}});
  const Json answer = json({"set", "--log", "--file", file("request", request.dump(1))});
  ASSERT_TRUE(answer.contains("parameters")) << answer["faults"];
  EXPECT_EQ(answer["parameters"].size(), request.size());
  for (const char *launch : {"launch_dlDiag", "launch_ulDiag", "launch_pingDiag", "launch_tracerouteDiag"})
    EXPECT_EQ(std::ranges::count(answer["log"], launch,
                                 [](const Json &record) { return record.value("request", ""); }),
              1)
        << launch << " in " << answer["log"];
  const std::string all = file("all", run({"--json", "get", ""}).out);
  json({"set", "--file", all}, 1);
  json({"set", "--skip-read-only", "--file", all});
}

} // namespace
} // namespace kova::e2e
