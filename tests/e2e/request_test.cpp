// Requests: what they store, what they refuse and how, and what the device is asked to do.
#include "kovactl.hpp"

#include <algorithm>

namespace kova::e2e {
namespace {

const std::string host_config = "InternetGatewayDevice.LANDevice.1.LANHostConfigManagement.";
const std::string lan = "InternetGatewayDevice.LANDevice.1.X_KOVA_LAN.";

using Pairs = std::vector<std::pair<std::string, std::string>>;

Pairs values_of(const Json &parameters) {
  Pairs pairs;
  for (const Json &parameter : parameters)
    pairs.emplace_back(parameter["path"], parameter["value"]);
  return pairs;
}

std::vector<std::string> requests_of(const Json &records) {
  std::vector<std::string> requests;
  for (const Json &record : records)
    if (record["kind"] == "service") requests.push_back(record["request"]);
  return requests;
}

using Request = Kovactl;

TEST_F(Request, MovesTheLanWithItsPool) {
  json({"nvram", "set", "lan_ip=192.168.1.1", "lan_netmask=255.255.255.0", "dhcpEnabled=1", "DMZEnable=1"});
  const Pairs values{{lan + "IPAddress", "10.20.30.1"},
                     {lan + "DHCPPoolStart", "10.20.30.100"},
                     {lan + "DHCPPoolEnd", "10.20.30.200"}};
  Words words{"set", "--log"};
  for (const auto &[path, text] : values)
    words.emplace_back(path).append("=").append(text);

  const Json answer = json(words);
  EXPECT_EQ(values_of(answer["parameters"]), values);
  EXPECT_EQ(requests_of(answer["log"]), std::vector<std::string>(3, "restart_dhcp_server"));
  EXPECT_EQ(nvram("lan_ip"), "10.20.30.1");
  EXPECT_EQ(nvram("different_subnets", 9), "1");
  EXPECT_EQ(nvram("DMZEnable"), "0");
}

TEST_F(Request, RefusesACombinationByNameAndChangesNothing) {
  value(lan + "IPAddress"); // an agent's first start stores something itself
  const Json before = json({"nvram", "list"});
  const Words words{"set", "--log", lan + "IPAddress=10.20.30.1", lan + "DHCPPoolStart=10.20.31.100",
                    lan + "DNSServer1=9.9.9.9"};
  const Json answer = json(words, 1);
  EXPECT_EQ(answer["fault"], (Json{{"code", 9003}, {"text", "Invalid arguments"}}));
  ASSERT_EQ(answer["faults"].size(), 2U);
  EXPECT_EQ(answer["faults"][1]["code"], 9007);
  EXPECT_EQ(answer["faults"][1]["path"], lan + "DHCPPoolStart");
  EXPECT_TRUE(answer["stored"].empty());
  EXPECT_TRUE(answer["log"].empty());
  EXPECT_EQ(json({"nvram", "list"}), before);

  const std::string message = run(words).err;
  for (const std::string text : {"9003", "nothing was stored", "9007", "DHCPPoolStart"})
    EXPECT_NE(message.find(text), std::string::npos) << text << " in\n" << message;
}

TEST_F(Request, ReportsEveryFaultWithItsCode) {
  const struct {
    std::string assignment;
    int code;
  } cases[] = {
      {"InternetGatewayDevice.NoSuchThing=1", 9005},
      {lan + "=1", 9005},
      {host_config + "MACAddress=00:1A:2B:3C:4D:5E", 9008},
      {lan + "SubnetMask=255.255.0.0", 9007},
      {lan + "DHCPPoolStart=300.1.1.1", 9007},
  };
  value(lan + "IPAddress"); // an agent's first start stores something itself
  const Json before = json({"nvram", "list"});
  Words words{"set", lan + "DHCPLeaseTime=600"};
  for (const auto &[assignment, code] : cases)
    words.push_back(assignment);
  const Json answer = json(words, 1);
  ASSERT_EQ(answer["faults"].size(), std::size(cases));
  for (size_t i = 0; i < std::size(cases); ++i) {
    const Json &fault = answer["faults"][i];
    EXPECT_EQ(fault["path"], cases[i].assignment.substr(0, cases[i].assignment.find('=')));
    EXPECT_EQ(fault["code"], cases[i].code) << cases[i].assignment;
  }
  EXPECT_EQ(json({"nvram", "list"}), before);
}

TEST_F(Request, TellsWhatWasStoredWhenASetterRefuses) {
  const Json answer =
      json({"set", lan + "DNSServer1=9.9.9.9", lan + "DHCPLeaseTime=5", lan + "DNSServer3=7.7.7.7"}, 1);
  EXPECT_EQ(answer["fault"]["code"], 9003);
  ASSERT_EQ(answer["faults"].size(), 1U);
  EXPECT_EQ(answer["faults"][0]["path"], lan + "DHCPLeaseTime");
  EXPECT_EQ(answer["faults"][0]["code"], 9007);
  EXPECT_EQ(values_of(answer["stored"]), (Pairs{{lan + "DNSServer1", "9.9.9.9"}}));
  EXPECT_EQ(values_of(answer["notStored"]),
            (Pairs{{lan + "DHCPLeaseTime", "5"}, {lan + "DNSServer3", "7.7.7.7"}}));
}

TEST_F(Request, FailsWhenTheDeviceHasNoRoom) {
  run({"device", "up"});
  const auto without_room = [&](const Words &words) {
    return shell("trap '' XFSZ; ulimit -f 0; " + command_line(words));
  };
  const std::string dns = "InternetGatewayDevice.LANDevice.1.X_KOVA_LAN.DNSServer1", before = value(dns);
  const Result refused = without_room({"--json", "set", dns + "=9.9.9.9"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(Json::parse(refused.out)["faults"][0]["code"], 9002);
  EXPECT_EQ(value(dns), before);
  EXPECT_EQ(without_room({"settings", "backup"}).status, 1);
  EXPECT_EQ(run({"settings", "restore"}).status, 1) << "an empty file is no backup";
}

TEST_F(Request, TakesTheLastMentionOfAParameter) {
  const Json answer = json({"set", "--log", lan + "DNSServer1=not an address", lan + "DNSServer2=8.8.4.4",
                            lan + "DNSServer1=9.9.9.9"});
  EXPECT_EQ(values_of(answer["parameters"]),
            (Pairs{{lan + "DNSServer2", "8.8.4.4"}, {lan + "DNSServer1", "9.9.9.9"}}));
  EXPECT_EQ(requests_of(answer["log"]).size(), 2U);
}

TEST_F(Request, ReadsWhatItCanAndNamesTheRest) {
  json({"nvram", "set", "TR_IF_TYPE=carrier_pigeon"});
  const std::string interface = "InternetGatewayDevice.ManagementServer.X_KOVA_Interface";
  const Json answer = json({"get", interface, lan + "SubnetMask", "InternetGatewayDevice.LANDevice"}, 1);
  ASSERT_EQ(answer["parameters"].size(), 1U);
  ASSERT_EQ(answer["faults"].size(), 2U);
  EXPECT_EQ(answer["faults"][0]["path"], interface);
  EXPECT_EQ(answer["faults"][0]["code"], 9002);
  EXPECT_EQ(answer["faults"][1]["path"], "InternetGatewayDevice.LANDevice");
  EXPECT_EQ(answer["faults"][1]["code"], 9005);
}

} // namespace
} // namespace kova::e2e
