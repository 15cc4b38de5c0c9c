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
      {"{\"A\": 1\n \"B\": 2}", ":2: "},
      {"{\"A\": [1]}", ":1: "},
      {"{\"\": 1}", ":1: "},
      {"{\"A\": \"\xff\"}", ":1: "},
      {"{\"A\": \"\\u0000\"}", ":1: "},
      {"{\"A\": 1}\n\nB=1", ":3: "},
      {"[\n1\n]", ":2: "},
      {"[{\"path\": \"A\",\n \"value\": \"1\"},\n{\"path\": \"B\"}\n]", ":3: "},
      {"[{\"path\": \"A\", \"value\": {}}]", ":1: "},
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
  EXPECT_EQ(shell(command_line({"set", "--file", "-"}) + " <&-").status, 2);
  EXPECT_FALSE(std::filesystem::exists(device())) << "nothing was done";
}

// Everything that is judged together, in one request; most of it as another command showed it.
TEST_F(RequestFile, CarriesTheLargestBatch) {
  const std::string lan = "InternetGatewayDevice.LANDevice.1.", wan = "InternetGatewayDevice.WANDevice.1.",
                    echo = "InternetGatewayDevice.UDPEchoConfig.",
                    download = "InternetGatewayDevice.DownloadDiagnostics.",
                    upload = "InternetGatewayDevice.UploadDiagnostics.",
                    route = "InternetGatewayDevice.TraceRouteDiagnostics.";
  Words shown{"get"};
  for (const char *name : {"Mode", "Rate", "Bandwidth"})
    shown.push_back(lan + "WLANConfiguration.1.X_KOVA_" + name);
  for (const char *name : {"IPAddress", "SubnetMask", "DHCPServerEnable", "DHCPPoolStart", "DHCPPoolEnd",
                           "DNSOption", "DNSServer1", "DNSServer2", "DNSServer3"})
    shown.push_back(lan + "X_KOVA_LAN." + name);
  for (const char *name : {"OperMode", "VPNType", "BCPEnable", "GREType"})
    shown.push_back(wan + "X_KOVA_WANSetting." + name);
  for (char profile = '1'; profile <= '8'; ++profile)
    for (const char *name : {".Enable", ".ApplyTo", ".BridgeVID"})
      shown.push_back(wan + "X_KOVA_APN." + profile + name);

  Json request = json(shown)["parameters"];
  const std::pair<std::string, Json> tests[] = {
      {download + "DiagnosticsState", "Requested"},
      {download + "Interface", ""},
      {download + "DownloadURL", "http://127.0.0.1:1/"},
      {download + "DSCP", 0},
      {upload + "DiagnosticsState", "Requested"},
      {upload + "Interface", ""},
      {upload + "UploadURL", "http://127.0.0.1:1/"},
      {upload + "TestFileLength", 1},
      {upload + "DSCP", 0},
      {echo + "Enable", 0},
      {echo + "Interface", ""},
      {echo + "SourceIPAddress", ""},
      {echo + "UDPPort", 7},
      {echo + "EchoPlusEnabled", 0},
      {ping + "DiagnosticsState", "Requested"},
      {ping + "Host", "127.0.0.1"},
      {ping + "NumberOfRepetitions", 1},
      {ping + "Timeout", 1000},
      {ping + "DataBlockSize", 56},
      {route + "DiagnosticsState", "Requested"},
      {route + "Host", "127.0.0.1"},
      {route + "NumberOfTries", 1},
      {route + "Timeout", 1000},
      {route + "DataBlockSize", 38},
      {route + "MaxHopCount", 2},
  };
  for (const auto &[path, text] : tests)
    request.push_back({{"path", path}, {"value", text}});
  ASSERT_EQ(request.size(), 65U);

  for (const char *tool : {"download_diag", "upload_diag", "ping_diag", "traceroute_diag"})
    replace_program(std::string("root/bin/") + tool, "exit 0");
  const Json answer = json({"set", "--log", "--file", file("request", request.dump(1))});
  EXPECT_EQ(answer["parameters"].size(), 65U) << answer;
  for (const char *launch : {"launch_dlDiag", "launch_ulDiag", "launch_pingDiag", "launch_tracerouteDiag"})
    EXPECT_EQ(std::ranges::count(answer["log"], launch,
                                 [](const Json &record) { return record.value("request", ""); }),
              1)
        << launch << " in " << answer["log"];
}

} // namespace
} // namespace kova::e2e
