// kovactl itself: its device, its stores, its log, and how it answers.
#include "kovactl.hpp"

#include <algorithm>
#include <csignal>

namespace kova::e2e {
namespace {

const std::string address = "InternetGatewayDevice.LANDevice.1.X_KOVA_LAN.IPAddress";

using Tool = Kovactl;

TEST_F(Tool, CreatesTheDeviceOnFirstUseAndKeepsItsSettingsUntilReset) {
  EXPECT_EQ(json({"device", "status"}, 3)["created"], false);
  EXPECT_FALSE(std::filesystem::exists(device())) << "looking at it must not create it";
  const Result first = run({"get", address});
  EXPECT_EQ(first.status, 0);
  EXPECT_NE(first.err.find(device().string()), std::string::npos) << first.err;
  EXPECT_EQ(run({"get", address}).err, "");

  json({"nvram", "set", "lan_ip=10.9.8.7"});
  EXPECT_EQ(json({"device", "down"})["serviced"], nullptr);
  EXPECT_EQ(value(address), "10.9.8.7");
  json({"device", "reset"});
  EXPECT_EQ(value(address), "192.168.1.1");
}

TEST_F(Tool, TellsWhichDaemonsRun) {
  const Json without = json({"device", "up"});
  EXPECT_TRUE(without["serviced"].is_number() && !without["feed"]) << without;
  unsetenv("KOVA_FEED");
  EXPECT_EQ(json({"device", "up"})["feed"], true);
  const std::string text = run({"device", "status"}).out;
  EXPECT_NE(text.find("radio feed      on\n"), std::string::npos) << text;
}

TEST_F(Tool, ChoosesItsDevice) {
  const std::string other = (directory() / "other").string();
  run({"--device", other, "nvram", "set", "lan_ip=10.9.8.7"});
  EXPECT_NE(value(address), "10.9.8.7");
  EXPECT_EQ(json({"--device", other, "get", address})["parameters"][0]["value"], "10.9.8.7");
  run({"--device", other, "device", "down"});
}

TEST_F(Tool, EditsTheStores) {
  json({"nvram", "set", "-s", "9", "one=a b=c", "two="});
  EXPECT_EQ(nvram("one", 9), "a b=c");
  EXPECT_EQ(nvram("two", 9), "");
  EXPECT_EQ(json({"nvram", "list", "-s", "9", "tw"}).size(), 1U);
  json({"nvram", "unset", "-s", "9", "one"});
  EXPECT_EQ(run({"nvram", "get", "-s", "9", "one"}).status, 1);
  EXPECT_EQ(run({"nvram", "unset", "-s", "9", "one"}).status, 1);

  const std::string leaf = "/tarn/cm_config/apnprofile/apn1/enable";
  json({"tree", "set", leaf + "=0"});
  EXPECT_EQ(json({"tree", "get", leaf.substr(1)})[0]["value"], "0");
  EXPECT_EQ(json({"tree", "list", leaf}).size(), 1U);
  EXPECT_EQ(run({"tree", "get", "/tarn/nothing/here"}).status, 1);
}

TEST_F(Tool, LogsInWithTheStoredPasswordOnly) {
  const auto login = [&](const std::string &account, const std::string &password) {
    return shell("printf '%s\\n' '" + password + "' | " + command_line({"login", account})).status;
  };
  EXPECT_EQ(login("user", ""), 1) << "no password yet";
  json({"set", "InternetGatewayDevice.UserInterface.X_KOVA_UserPassword=Corr3ct horse",
        "InternetGatewayDevice.UserInterface.X_KOVA_AdminPassword=battery"});
  EXPECT_EQ(login("user", "Corr3ct horse"), 0);
  EXPECT_EQ(login("user", "Corr3ct horse "), 1);
  EXPECT_EQ(login("user", "battery"), 1);
  EXPECT_EQ(login("admin", "battery"), 0);
  EXPECT_EQ(login("root", "battery"), 2);
}

TEST_F(Tool, AnswersInJsonWhateverHappens) {
  for (const Words &bad_usage :
       {Words{}, Words{"frobnicate"}, Words{"get"}, Words{"get", address, "--frobnicate"},
        Words{"set", address}, Words{"set", "=1"}, Words{"log", "--tail", "-1"},
        Words{"model", "--format", "json"}}) {
    SCOPED_TRACE(command_line(bad_usage));
    json(bad_usage, 2);
    const Result plain = run(bad_usage);
    EXPECT_EQ(plain.status, 2);
    EXPECT_EQ(plain.out, "");
    EXPECT_NE(plain.err, "");
  }
  EXPECT_FALSE(std::filesystem::exists(device()));
  for (const Words &failing :
       {Words{"get", "Nothing"}, Words{"list", "Nothing"}, Words{"nvram", "get", "no such key"},
        Words{"tree", "get", "/no/such/leaf"}, Words{"--device", "/dev/null/device", "get", address}})
    json(failing, 1);
  json({"model", "--format", "xml"}, 2); // a document is no answer in JSON
  json({"nvram", "set", "-s", "9", "key=not \xff UTF-8"});
  json({"nvram", "list", "-s", "9"});
}

// What a person types, and a part of what answers it.
TEST_F(Tool, FindsNamesSuggestsAndExplains) {
  run({"device", "up", "--serial", "AB-12"});
  json({"nvram", "set", "MACFilterEnable=1", "MACFilterMode=0", "MACFilterRules="});
  const std::string filter = "InternetGatewayDevice.X_KOVA_Firewall.MACFilter.";
  const struct {
    std::string words;
    int status;
    std::string answer;
  } cases[] = {
      {"get -v DeviceInfo.SerialNumber", 0, "AB-12\n"},
      {"device list", 0, "up      AB-12\n"},
      {"find LEASE dhcp", 0, "X_KOVA_LAN.DHCPLeaseTime "},
      {"find nothing like this", 1, "no parameter has that"},
      {"get -v '*.SSID' X_KOVA_LAN.IPAddress", 0, "kova-3\n192.168.1.1\n"},
      {"get SSID", 1, "9005  Invalid parameter name  SSID  it could be "},
      {"get '*.NoSuchName'", 1, "nothing matches it"},
      {"list InternetGatewayDevice.LANDevice.1.WLANConfiguration.1.Ch", 0, "a number from 0 to 13"},
      {"gte", 2, "there is no command \"gte\"; did you mean \"get\"?"},
      {"get --vlaues x", 2, "did you mean \"--values\"?"},
      {"help device up", 0, "--serial TEXT"},
      {"help devise", 2, "did you mean \"device\"?"},
      {"-V", 0, "kovactl "},
      {"--color always get X_KOVA_LAN.IPAddress", 0, "\033["},
      {"watch --times 1 X_KOVA_LAN.IPAddress", 0, "IPAddress  192.168.1.1\n"},
      {"log --kind device --since 1h", 0, "booted"},
      {"log --kind event --since 2000-01-01", 0, ""},
      {"log --since yesterday", 2, "is no time"},
      // Reasons: of a type, a rule, a combination, a switch, a mode, a row, a password.
      {"set MACFilter.Enable=maybe", 1, "9006  Invalid parameter type"},
      {"set X_KOVA_LAN.DHCPLeaseTime=5", 1, "it takes a number of seconds from 300 to 172800"},
      {"set X_KOVA_LAN.IPAddress=192.168.9.1", 1, "192.168.1.200 is not in the network of 192.168.9.1"},
      {"set URLFilter.Mode=1", 1, "URLFilter.Enable=1 first"},
      {"set PeriodicInformEnable=0", 0, "0\n"},
      {"--secondary set PeriodicInformInterval=500", 1, "PeriodicInformEnable=1 first, for the primary"},
      {"export Nope", 1, "nothing that can be exported"},
      {"set LocalTimeZone=+05:45", 0, "+05:45\n"},
      {"set DaylightSavingsUsed=1", 1, "the zone has no daylight saving"},
      {"add MACFilter.White. 00:11:22:33:44:55", 1, "MACFilter.Mode=1 first"},
      {"add MACFilter.Black. 00:11", 1, "it takes a MAC address"},
      {"add X_KOVA_Route. 192.168.1.2,10.1.0.0,255.255.0.0,7", 1, "Route type with wrong value."},
      {"add X_KOVA_SpeedDial. 99,5,x", 1, "dial number takes one of 1, 2"},
      {"get -v MACFilter.Black.", 0, ""},
      {"add MACFilter.Black. 00:11:22:33:44:55", 0, filter + "Black.1.\n"},
      {"list " + filter + "Black.1", 0, "Black.1.Rule "},
      {"list --lists " + filter + "W", 0, "White.{i}.Rule "},
      {"complete -- add MACFilter.", 0, "MACFilter.Black.\nMACFilter.White.\n"},
      {"complete -- delete " + filter + "Black.", 0, filter + "Black.1.\n"},
      {"delete MACFilter.Black.1.", 0, filter + "Black.1.\n"},
      {"set X_KOVA_UserPassword=Abcdefg1", 1, "it takes at least one symbol\n"},
      {"set X_KOVA_APN.1.Enable=0", 1, "one of the profiles 1 to 7 must be enabled for data"},
      // The four spellings, of an accessor that takes the digits and of one that takes the words.
      {"set MACFilter.LogEnable=true", 0, "LogEnable  1\n"},
      {"set X_KOVA_DMZEnable=0", 0, "X_KOVA_DMZEnable  false\n"},
      {"set X_KOVA_APN.1.Enable=true", 0, "X_KOVA_APN.1.Enable  1\n"},
      {"set --dry-run X_KOVA_LAN.DNSServer2=9.9.9.9", 0, "would be accepted"},
      {"set --dry-run X_KOVA_LAN.DHCPLeaseTime=5", 1, "it takes a number"},
      {"get X_KOVA_LAN.DNSServer2", 0, "DNSServer2\n"},
      {"complete -- set InternetGatewayDevice.X_KOVA_Firewall.MACFilter.Enable = ", 0, "Enable=1\n"},
      {"complete -- set MACFilter.Mo", 0, "MACFilter.Mode=\n"},
      {"complete -- set Region=D", 0, "Region=DE\n"},
      {"complete -- nvram get lan_i", 0, "lan_ip\n"},
      {"complete -- tree get /tarn/cm", 0, "/tarn/cm_config/\n"},
      {"complete -- --device /nowhere de", 0, "delete\ndevice\n"},
      {"completion zsh", 0, "#compdef kovactl"},
      {"device down", 0, "down"},
      {"device status", 3, "not running"},
  };
  for (const auto &[words, status, answer] : cases) {
    const Result result = shell("'" KOVACTL_PATH "' " + words + " 2>&1");
    EXPECT_EQ(result.status, status) << words << "\n" << result.out;
    EXPECT_NE(result.out.find(answer), std::string::npos) << words << "\n" << result.out;
    if (answer.empty()) {
      EXPECT_EQ(result.out, "");
    }
  }
}

TEST_F(Tool, TellsThatNoServiceHeard) {
  kill(json({"device", "up"})["serviced"], SIGKILL);
  const Result result = run({"set", "X_KOVA_LAN.DNSServer2=8.8.4.4"});
  EXPECT_EQ(result.status, 0);
  EXPECT_NE(result.err.find("the service daemon is not running"), std::string::npos) << result.err;
}

TEST_F(Tool, HelpsWithPathsThatAreNearlyRight) {
  const std::string device = "InternetGatewayDevice.", ping = device + "IPPingDiagnostics.";
  const struct {
    std::string typed, meant; // "": nothing is like it
  } cases[] = {
      {"internetgatewaydevice.ippingdiagnostics.HOST", ping + "Host"},
      {ping + "Hots", ping + "Host"},
      {ping + "Host.", ping + "Host"},
      {device + "IPPing", ping},
      {device + "LANDevice.2.", ""},
      {"Elsewhere", ""},
  };
  for (const auto &[typed, meant] : cases) {
    const Json fault = json({"get", typed}, 1)["faults"][0];
    EXPECT_EQ(fault.value("detail", ""), meant.empty() ? "" : "did you mean \"" + meant + "\"?") << typed;
  }
  const Json faults = json({"set", device + "IPPingDiagnostics=1"}, 1)["faults"];
  EXPECT_FALSE(faults[0].contains("detail")) << "an object cannot be set";
}

// Only results are on standard output, and nothing of them in a file that took its place.
TEST_F(Tool, KeepsStandardOutputToItself) {
  run({"device", "up"});
  replace_program("bin/test_cpeevent", "echo noise");
  const std::string apply = "InternetGatewayDevice.LANDevice.1.LANHostConfigManagement.X_KOVA_Apply=1";
  EXPECT_TRUE(json({"set", apply}).contains("parameters"));
  EXPECT_EQ(run({"set", apply}).err, "noise\n");

  run({"get", ""}); // some values are stored as they are read
  const auto size = [&](const char *name) { return std::filesystem::file_size(device() / "store" / name); };
  const auto data = size("data.mdb"), lock = size("data.mdb-lock");
  for (const std::string redirection : {" >&-", " <&- >&-", " >/dev/full"}) {
    const Result result = shell(command_line({"get", ""}) + redirection);
    EXPECT_EQ(result.status, 1) << redirection;
    EXPECT_NE(result.err.find("could not be written"), std::string::npos) << result.err;
  }
  EXPECT_EQ(size("data.mdb"), data);
  EXPECT_EQ(size("data.mdb-lock"), lock);
  for (const Words &words : {Words{"list"}, Words{"model", "--format", "markdown"}})
    EXPECT_EQ(shell(command_line(words) + " | head -n 1").err, "");
}

TEST_F(Tool, ShortensWhatItRepeatsOfARequest) {
  const std::string err =
      run({"set", address + "=1\n2", "Nothing=1", address + "=" + std::string(4000, 'x')}).err;
  EXPECT_LT(err.size(), 500U) << err;
  EXPECT_NE(err.find("4000"), std::string::npos) << err;
  EXPECT_NE(run({"set", address + "=1\n2"}).err.find("\"1\\n2\""), std::string::npos);
}

TEST_F(Tool, ShowsTheLog) {
  run({"set", "InternetGatewayDevice.LANDevice.1.X_KOVA_LAN.DNSServer1=9.9.9.9", "--log"});
  const Json last = json({"log", "--tail", "1"});
  ASSERT_EQ(last.size(), 1U);
  EXPECT_EQ(last[0]["request"], "restart_dhcp_server");
  EXPECT_GT(json({"log"}).size(), 1U);
  EXPECT_EQ(json({"log", "--tail", "0"}).size(), 0U);
  // Following shows what happens after it began.
  const std::string follow = command_line({"log", "--follow", "--tail", "0"});
  const std::string ask = command_line({"set", "InternetGatewayDevice.LANDevice.1.X_KOVA_LAN.DNSServer2="});
  const std::string seen = "'" + (directory() / "seen").string() + "'";
  shell(follow + " >" + seen + " & for i in $(seq 500); do " + ask +
        " >/dev/null; grep -q restart_dhcp_server " + seen + " && break; sleep 0.1; done; kill $!");
  EXPECT_NE(read(directory() / "seen").find("restart_dhcp_server"), std::string::npos);
}

TEST_F(Tool, CompletesPaths) {
  const auto complete = [&](const std::string &words) {
    return shell("bash -c 'source <(\"" KOVACTL_PATH "\" completion bash); COMP_WORDS=(\"" KOVACTL_PATH
                 "\" " +
                 words + "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _kovactl; echo \"${COMPREPLY[*]}\"'")
        .out;
  };
  EXPECT_EQ(complete("device st"), "status\n");
  EXPECT_EQ(complete("model --format m"), "markdown\n");
  EXPECT_EQ(complete("add InternetGatewayDevice.L"), "InternetGatewayDevice.Layer3Forwarding.\n");
  EXPECT_EQ(complete("--json set InternetGatewayDevice.LANDevice.1.X_KOVA_LAN.S"),
            "InternetGatewayDevice.LANDevice.1.X_KOVA_LAN.SubnetMask=\n");

  if (shell("command -v zsh").status != 0) return;
  const Result in_zsh = shell("zsh -fc 'compdef() {}; source <(\"" KOVACTL_PATH "\" completion zsh); "
                              "compadd() { local a=${@[-1]}; print -rl -- ${(P)a}; }; CURRENT=4; "
                              "words=(\"" KOVACTL_PATH "\" set --log " +
                              address + "); _kovactl'");
  EXPECT_EQ(in_zsh.out, address + "=\n\n");
}

TEST_F(Tool, EscapesForATerminalOnly) {
  json({"nvram", "set", "key=bell\a", "static_route_key=bell\a"});
  const std::string command = command_line({"nvram", "get", "key"});
  EXPECT_NE(shell(command).out.find("bell\a"), std::string::npos);
  const std::string plain = on_terminal("NO_COLOR=1 " + command);
  EXPECT_NE(plain.find("bell\\x07"), std::string::npos) << plain;
  EXPECT_EQ(plain.find('\033'), std::string::npos);
  EXPECT_NE(on_terminal(command_line({"model", "--format", "csv"})).find("bell\\x07,"), std::string::npos);
}

} // namespace
} // namespace kova::e2e
