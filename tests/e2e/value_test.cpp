// Values that a shell would act on: they are stored, and reach the programs of the device, as they are.
#include "kovactl.hpp"

#include <map>
#include <set>

namespace kova::e2e {
namespace {

using Value = Kovactl;

TEST_F(Value, IsNeverShellSyntax) {
  const std::string root = "InternetGatewayDevice.", sas = root + "X_KOVA_SAS.",
                    ping = root + "IPPingDiagnostics.", intrusion = "cp /dev/null $KOVA_DEVICE/pwned",
                    host = "`cp${IFS}/dev/null${IFS}$KOVA_DEVICE/pwned`";
  // The markup check keeps quotes, parentheses and backslashes out of the first four.
  const std::map<std::string, std::string> values = {
      {sas + "FCCId", "`" + intrusion + "`"},
      {sas + "CallSign", "x; " + intrusion + " & y; #"},
      {sas + "UserId", "$HOME ${PATH} $KOVA_DEVICE `"},
      {sas + "ServerURL", "x\n" + intrusion + "\n"},
      {root + "DeviceInfo.ProvisioningCode", "\"; " + intrusion + "; \"'\\$(" + intrusion + ")"},
      {ping + "Host", host}};
  Json request = values;
  request[ping + "DiagnosticsState"] = "Requested";
  const Json answer = json({"set", "--log", "--file", file("request", request.dump())});

  for (const auto &[path, text] : values)
    EXPECT_EQ(value(path), text) << path;
  std::set<std::string> messages;
  Json pinged;
  for (const Json &record : answer["log"])
    if (record["kind"] == "syslog")
      messages.insert(record["priority"].get<std::string>() + " " + record["tag"].get<std::string>() + " " +
                      record["text"].get<std::string>());
    else if (record["kind"] == "command" && record["program"] == "ping_diag")
      pinged = record["args"].at(1);
  EXPECT_EQ(messages, (std::set<std::string>{"5 easycwmpd set SAS_FCCID=" + values.at(sas + "FCCId"),
                                             "5 easycwmpd set SAS_CALLSIGN=" + values.at(sas + "CallSign"),
                                             "5 easycwmpd set SAS_USERID=" + values.at(sas + "UserId"),
                                             "5 easycwmpd set SAS_ADDRESS=" + values.at(sas + "ServerURL")}));
  EXPECT_EQ(pinged, host);
  const std::string shown = "  easycwmpd: set SAS_FCCID=`" + intrusion + "`\n", exported = shown.substr(1);
  EXPECT_NE(run({"log"}).out.find(shown), std::string::npos);
  EXPECT_NE(value(root + "DeviceInfo.DeviceLog").find(" syslog" + exported), std::string::npos);

  for (const auto &entry : std::filesystem::recursive_directory_iterator(directory()))
    EXPECT_NE(entry.path().filename(), "pwned");
}

} // namespace
} // namespace kova::e2e
