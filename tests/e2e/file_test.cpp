// Requests from a file or standard input.
#include "kovactl.hpp"

#include <algorithm>
#include <regex>
#include <set>

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

// All that can be set, as the device shows it, and the tests on top: in one request. So its factory settings keep its
// own rules.
TEST_F(RequestFile, CarriesTheWholeDevice) {
  // Not what would only be refused: what waits for a switch or a mode, and what shows no value.
  const std::regex closed(R"(.*\.(\w+Diagnostics\.DiagnosticsState|X_KOVA_OperMode\.\w+|X_KOVA_PCSCF\w+|)"
                          R"((IPv6|MAC|URL)Filter\.(Mode|LogEnable)|X_KOVA_SNMP\.UserName))");
  std::set<std::string> writable;
  for (const Json &listed : json({"list", "--writable"}))
    writable.insert(listed["path"]);
  const Json all = json({"get", ""});
  Json request;
  for (const Json &shown : all["parameters"]) {
    const std::string path = shown["path"], text = shown["value"];
    if (writable.contains(path) && text.find_first_not_of(' ') != std::string::npos &&
        !std::regex_match(path, closed))
      request.push_back(shown);
  }
  EXPECT_GT(request.size(), 180U);
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
}

} // namespace
} // namespace kova::e2e
