// The management server's settings, the device's own facts, the clock, the radio and the WAN connection.
#include "kovactl.hpp"
#include "support/match.hpp"

#include <algorithm>

namespace kova::e2e {
namespace {

const std::string gateway = "InternetGatewayDevice.";
const std::string server = gateway + "ManagementServer.";

using Agent = Kovactl;

// Not what an operator gives the device, nor what never shows, nor addresses of bearers that the host has not.
bool may_be_empty(const std::string &path) {
  return test::matches(
      path, R"(.*\.(URL|ConnectionRequestURL|ParameterKey|STUN(Username|Password)|\w+NotificationLimit|)"
            R"(X_KOVA_CloudKey|X_KOVA_Apply|APN\.\d\.IPAddress))");
}

TEST_F(Agent, TellsEverythingOnAFreshDevice) {
  for (const char *object : {"DeviceInfo.", "ManagementServer.", "Time.", "X_KOVA_LTE."}) {
    const Json answer = json({"get", gateway + object});
    EXPECT_EQ(answer["parameters"].size(), json({"list", gateway + object}).size()) << object;
    for (const Json &parameter : answer["parameters"])
      EXPECT_TRUE(parameter["value"] != "" || may_be_empty(parameter["path"])) << parameter["path"];
  }
}

TEST_F(Agent, DoesOnceWhatAnAgentDoesWhenItStarts) {
  json({"nvram", "set", "TR_INFORM_INTERVAL=3000"});
  EXPECT_EQ(value(server + "PeriodicInformInterval"), "300");
  json({"nvram", "set", "TR_INFORM_INTERVAL=3000"});
  EXPECT_EQ(value(server + "PeriodicInformInterval"), "3000");
}

TEST_F(Agent, KeepsTheServerSettingsOfBothInstances) {
  const std::pair<const char *, const char *> kept[] = {{"TR_ACS_URL", "http://127.0.0.1:1/?a=b"},
                                                        {"S_TR_ACS_USER", "second"}};
  for (const auto &[key, text] : kept)
    json({"nvram", "set", std::string(key) + "=" + text});
  EXPECT_EQ(json({"settings", "restore"}, 1).count("error"), 1U) << "there is no backup yet";

  const std::string file = json({"settings", "backup"})["file"];
  EXPECT_TRUE(file.starts_with(device().string()));
  for (const auto &[key, text] : kept)
    json({"nvram", "set", std::string(key) + "=changed"});
  json({"settings", "restore"});
  for (const auto &[key, text] : kept)
    EXPECT_EQ(nvram(key), text);
  EXPECT_FALSE(std::filesystem::exists(file));
  EXPECT_NE(run({"settings", "restore"}).err.find("no backup"), std::string::npos);
}

TEST_F(Agent, SetsTheIndexedDmzSettings) {
  const std::string connection = gateway + "WANDevice.1.WANConnectionDevice.1.WANIPConnection.1.";
  json({"set", connection + "X_KOVA_DMZEnable=false"});
  const std::string host = connection + "X_KOVA_DMZHostIPAddress=192.168.1.77";
  EXPECT_EQ(json({"set", host}, 1)["faults"][0]["code"], 9007) << "while the DMZ is off";
  json({"set", connection + "X_KOVA_DMZEnable=true"});
  json({"set", host});
  EXPECT_EQ(nvram("DMZAddress"), "192.168.1.77");
}

TEST_F(Agent, ShowsTheLinesOfAValueBelowEachOther) {
  const std::string description = gateway + "DeviceInfo.Description";
  json({"nvram", "set", "WEB_NAME=first\nsecond"});
  EXPECT_EQ(value(description), "first\nsecond");
  EXPECT_EQ(run({"get", description}).out,
            description + "  first\n" + std::string(description.size(), ' ') + "  second\n");

  // The device log is longer than any other value.
  std::ofstream log(device() / "log/device.log", std::ios::app);
  for (int i = 0; i < 80; ++i)
    log << Json{{"time", "2026-11-21T03:16:16.123Z"}, {"kind", "device"}, {"what", std::string(100, 'x')}}
        << '\n';
  log.close();
  const std::string shown = value(gateway + "DeviceInfo.DeviceLog");
  EXPECT_GT(shown.size(), 80U * 100U);
  EXPECT_GT(std::ranges::count(shown, '\n'), 80);
}

// Over the host's own interfaces: the loopback's network is known everywhere.
TEST_F(Agent, IsReachedAtTheInterfaceTowardsItsServer) {
  json({"nvram", "set", "TR_ACS_URL=http://127.0.0.1:8080/acs", "S_TR_ACS_URL=http://127.0.0.1:8080/acs"});
  EXPECT_EQ(value(server + "ConnectionRequestURL"), "http://127.0.0.1:7547");
  EXPECT_EQ(nvram("TR_CR_PATH"), "http://127.0.0.1:7547");
  const Json second = json({"--secondary", "get", server + "ConnectionRequestURL"});
  EXPECT_EQ(second["parameters"][0]["value"], "http://127.0.0.1:7550");
  json({"nvram", "set", "TR_ACS_URL=http://localhost:1/"}); // a name leads over the default route
  EXPECT_TRUE(test::matches(value(server + "ConnectionRequestURL"), R"((http://[\d.]+:7547)?)"));
}

} // namespace
} // namespace kova::e2e
