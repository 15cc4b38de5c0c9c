// The device's own tools that answer: the NTP script and the log export.
#include "booted_device.hpp"
#include "device/log.hpp"
#include "device/zone.hpp"
#include "platform/host/nvram_admin.hpp"

namespace kova::test {
namespace {

void store(const std::string &key, const std::string &value) {
  const host::NvramEntry entry{0, key, value};
  host::nvram_store({&entry, 1});
}

TEST(PosixZone, SaysWhatTheSettingsSay) {
  const device::DaylightSaving europe{{3, 5, 0}, {10, 5, 0}}, // rows of 2026, whose March begins on a Sunday
      south{{10, 2, 0}, {4, 1, 0}}, rows_beyond{{2, 6, 0}, {11, 6, 1}}, none{{0, 0, 0}, {10, 5, 0}};
  const struct {
    const char *code;
    std::optional<device::DaylightSaving> saving;
    const char *zone;
  } zones[] = {
      {"MEZ_001", {}, "MEZ-1"},
      {"MEZ_001", europe, "MEZ-1MEZDST,M3.5.0,M10.4.0"},
      {"MEZ_001", none, "MEZ-1"},
      {"MEZ_001", rows_beyond, "MEZ-1MEZDST,M2.4.0,M11.5.1"},
      {"PST_-08", {}, "PST8"},
      {"A_09:30", south, "<+0930>-9:30<+1030>,M10.1.0,M4.1.0"},
      {"N_-3:30", south, "<-0330>3:30<-0230>,M10.1.0,M4.1.0"},
      {"+13:30", {}, "<+1330>-13:30"},
      {"", {}, "UTC0"},
      {"MEZ_001;reboot", europe, "UTC0"},
      {"MEZ_99", {}, "UTC0"},
  };
  for (const auto &[code, saving, zone] : zones)
    EXPECT_EQ(device::posix_zone(code, saving, 2026), zone) << code;
  EXPECT_EQ(device::posix_zone("MEZ_001", europe, 2024), "MEZ-1MEZDST,M3.4.0,M10.4.0");
}

TEST(NtpScript, StoresTheZoneAndLogsTheSynchronisation) {
  const BootedDevice device;
  device.bring_up();
  EXPECT_TRUE(device.run([] {
    store("TZ", "N_-3:30");
    store("NTPServerIP", "192.0.2.123");
    EXPECT_EQ(system("/etc/sysconfig/script/ntp.sh envTZ"), 0);
    EXPECT_TRUE(host::nvram_find(0, "envTZ").value_or("").starts_with("<-0330>3:30<-0230>,M"));
    store("NTPDaylightSaving", "0");
    EXPECT_EQ(system("/etc/sysconfig/script/ntp.sh envTZ; /etc/sysconfig/script/ntp.sh"), 0);
    EXPECT_EQ(host::nvram_find(0, "envTZ"), "<-0330>3:30");
    EXPECT_NE(system("/etc/sysconfig/script/ntp.sh now 2>/dev/null"), 0);
  }));
  const auto synchronised = device.log("device").back();
  EXPECT_EQ(synchronised.at("what"), "clock synchronised");
  EXPECT_EQ(synchronised.at("server"), "192.0.2.123");
}

std::vector<std::string> exported_lines(const BootedDevice &device) {
  EXPECT_EQ(system("/home/www/cgi-bin/maintenance.cgi exportlog"), 0);
  std::vector<std::string> lines;
  std::ifstream file(device.directory() / "root/tmp/M4412_Log.dat");
  for (std::string line; std::getline(file, line);)
    lines.push_back(line);
  return lines;
}

TEST(LogExport, LeavesTheLastRecordsAsLinesForPeople) {
  const BootedDevice device;
  device.bring_up();
  EXPECT_EQ(system("ifconfig eth0 down"), 0);
  auto lines = exported_lines(device);
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_EQ(lines[2].substr(sizeof "2026-11-21 04:11:11"), "command ifconfig eth0 down");

  // A log that was put aside goes on.
  fs::rename(device.directory() / "log/device.log", device.directory() / "log/device.log.1");
  EXPECT_EQ(exported_lines(device).size(), 5U);
  std::ofstream(device.directory() / "log/device.log", std::ios::app) << "{\"half a rec\n[1]\n7\n{}\n";
  for (std::size_t i = 0; i < 2000; i++)
    device::log_record(
        {{"kind", "event"}, {"event", std::to_string(i) + "\n\t" + std::string(i % 300, 'x') + "ä"}});
  lines = exported_lines(device);
  ASSERT_EQ(lines.size(), 100U);
  EXPECT_NE(lines[0].find(" event 1901  "), std::string::npos) << lines[0];
  for (const std::string &line : lines) {
    EXPECT_LE(line.size(), 159U);
    EXPECT_NE(line.back(), "ä"[0]) << "a character was cut";
  }
  EXPECT_NE(system("/home/www/cgi-bin/maintenance.cgi reboot 2>/dev/null"), 0);
}

} // namespace
} // namespace kova::test
