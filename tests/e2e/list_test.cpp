// Lists of rows: adding, setting, showing and deleting them, and what is refused.
#include "kovactl.hpp"

namespace kova::e2e {
namespace {

const std::string routes = "InternetGatewayDevice.Layer3Forwarding.X_KOVA_Route.";
const std::string mac_filter = "InternetGatewayDevice.X_KOVA_Firewall.MACFilter.";
const std::string black = mac_filter + "Black.", white = mac_filter + "White.";
const std::string hops = "InternetGatewayDevice.TraceRouteDiagnostics.RouteHops.";

class List : public Kovactl {
protected:
  void SetUp() override {
    Kovactl::SetUp();
    json({"nvram", "set", "static_route_key=", "MACFilterEnable=1", "MACFilterMode=0",
          "MACFilterRules=", "MACFilterWhiteRules=", "ROUTEHOPS_HOPHOST=first;;third"});
  }

  std::vector<std::string> rows(const std::string &object) const {
    std::vector<std::string> texts;
    const Json answer = json({"get", object});
    for (const Json &row : answer["parameters"])
      texts.push_back(row["value"]);
    return texts;
  }
};

using Rows = std::vector<std::string>;

std::vector<std::string> events_of(const Json &records) {
  std::vector<std::string> events;
  for (const Json &record : records)
    if (record["kind"] == "event") events.push_back(record["event"]);
  return events;
}

const Rows restart{"ce_route stop", "ce_route start"};

TEST_F(List, KeepsRoutes) {
  const std::string one = "192.168.1.2,10.1.0.0,255.255.0.0,0", two = ",10.2.0.0,255.255.0.0,1";
  EXPECT_EQ(json({"add", routes})["instance"], 1);
  const Json added = json({"add", routes, "--log"});
  EXPECT_EQ(added, (Json{{"object", routes}, {"instance", 2}, {"log", Json::array()}}));

  const Json stored = json({"set", "--log", routes + "1.Rule=" + one, routes + "2.Rule=" + two});
  EXPECT_EQ(stored["parameters"][1], (Json{{"path", routes + "2.Rule"}, {"type", "string"}, {"value", two}}));
  EXPECT_EQ(events_of(stored["log"]), (Rows{restart[0], restart[1], restart[0], restart[1]}));
  EXPECT_EQ(rows(routes), (Rows{one, two}));
  EXPECT_EQ(rows(routes + "2."), Rows{two});
  EXPECT_EQ(nvram("static_route_key"), one + ";" + two);
  // Between the parameters of a wider branch.
  EXPECT_EQ(rows("InternetGatewayDevice.Layer3Forwarding."), (Rows{one, two, "2"}));

  EXPECT_EQ(events_of(json({"delete", routes + "1.", "--log"})["log"]), restart);
  EXPECT_EQ(rows(routes), Rows{two});
}

TEST_F(List, KeepsAFilterUnderItsSwitchAndMode) {
  const std::string mac = "00:1A:2B:3C:4D:5E";
  EXPECT_EQ(run({"add", black}).out, black + "1.\n");
  json({"set", black + "1.Rule=" + mac});
  EXPECT_EQ(nvram("WlanMACFilterRules"), mac);

  EXPECT_EQ(json({"add", white}, 1)["faults"][0]["code"], 9003); // of the other mode
  json({"add", black});
  json({"set", mac_filter + "Enable=0"});
  EXPECT_EQ(json({"delete", black + "2."})["instance"], 2); // a filter that is off can be cleared
  EXPECT_EQ(rows(black), Rows{mac});
}

TEST_F(List, AddsNoRowThatWouldCostAnother) {
  std::string text(15 * 18 - 1, ';'); // longer than what the device reads of it
  for (size_t row = 0; row < 15; ++row)
    text.replace(row * 18, 17, "00:1A:2B:3C:4D:" + std::to_string(10 + row));
  json({"nvram", "set", "MACFilterRules=" + text});
  EXPECT_EQ(json({"add", black}, 1)["faults"][0]["code"], 9004);
  EXPECT_EQ(nvram("MACFilterRules"), text);
}

TEST_F(List, RefusesWhatIsNoList) {
  const std::vector<std::pair<Words, int>> cases = {
      {{"add", "InternetGatewayDevice.NoSuchThing."}, 9005},
      {{"add", mac_filter}, 9005},
      {{"add", hops}, 9005},
      {{"delete", black + "1."}, 9005},
      {{"delete", hops + "1."}, 9005},
      {{"set", black + "1.Rule=00:1A:2B:3C:4D:5E"}, 9005},
      {{"set", hops + "1.HopHost=x"}, 9008},
      {{"get", black + "1.Rule"}, 9005},
  };
  for (const auto &[words, code] : cases)
    EXPECT_EQ(json(words, 1)["faults"][0]["code"], code) << words[0] << " " << words[1];
  const Json answer = json({"add", mac_filter + "Blakc."}, 1);
  EXPECT_NE(answer["faults"][0].value("detail", "").find(black), std::string::npos) << answer;
  EXPECT_EQ(rows(hops), (Rows{"first", "", "third"}));
}

TEST_F(List, GivesEachOfManyAddersARow) {
  run({"device", "up"});
  const std::string add = command_line({"add", "InternetGatewayDevice.Layer3Forwarding.X_KOVA_Route."});
  const Result added = shell("for i in 1 2 3 4 5 6; do " + add + " & done | sort -u | wc -l; wait");
  EXPECT_EQ(std::stoi(added.out), 6) << added.err;
}

} // namespace
} // namespace kova::e2e
