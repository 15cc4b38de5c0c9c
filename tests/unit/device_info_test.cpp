// What the device says about itself.
#include "fake/fake.hpp"

#include <kova/management.h>

using fake::get;
using fake::platform;
using fake::Strings;

namespace {

class DeviceInfo : public fake::Test {};

TEST_F(DeviceInfo, SettingsAreToldAsTheyAreStored) {
  const std::string value(300, 'v');
  platform.nvram = {{{0, "TR_MF"}, value}, {{9, "TR_MODEM_VER"}, value}};
  EXPECT_EQ(get(kovaGetTR069Manufacturer, 4096), value); // from an allocated copy
  EXPECT_EQ(get(kovaGetTR069ModemFirmwareVersion, 4096), value.substr(0, 255));
}

TEST_F(DeviceInfo, MemoryIsInThousandsOfBytesWhateverTheKernelsUnit) {
  platform.total_ram = 524288999;
  platform.free_ram = 1999;
  EXPECT_EQ(get(kovaGetTR069MemoryStatusTotal) + " " + get(kovaGetTR069MemoryStatusFree), "524288 1");
  platform.knows_memory_and_uptime = false;
  int result = 0;
  EXPECT_EQ(get(kovaGetTR069MemoryStatusFree, result), "");
  EXPECT_EQ(result, -1);
}

TEST_F(DeviceInfo, TheLogIsAppendedWhole) {
  const Strings commands = {"run rm -f /tmp/M4412_Log.dat",
                            "run /home/www/cgi-bin/maintenance.cgi exportlog"};
  char buffer[8192] = "begun ";
  EXPECT_EQ(kovaGetTR069DeviceLog(buffer, 1), 0); // no log
  EXPECT_STREQ(buffer, "begun ");
  EXPECT_EQ(platform.done, commands);
  const std::string log =
      "a line\n" + std::string(1022, 'x') + "\n" + std::string(1023, 'y') + "\n" + std::string(3000, 'z');
  platform.output["cat /tmp/M4412_Log.dat"] = log;
  EXPECT_EQ(kovaGetTR069DeviceLog(buffer, 1), 0);
  EXPECT_EQ(buffer, "begun " + log);
}

TEST_F(DeviceInfo, ManufacturerPartOfAnAddress) {
  platform.interfaces = {{"a-name-of-15-ch", "", "", -1, "00:1a:2b:3c:4d:5e"},
                         {"eth1", "", "", -1, "F0:0e:ff:0:0:0"}};
  char out[] = "########";
  EXPECT_EQ(kova_getManufacturerMac("a-name-of-15-characters", out), 0);
  EXPECT_STREQ(out, "001A2B");
  EXPECT_EQ(out[7], '#'); // 7 bytes are written
  EXPECT_EQ(kova_getManufacturerMac("eth1", out), 0);
  EXPECT_STREQ(out, "F00EFF");
  for (const char *unknown : {"eth2", static_cast<const char *>(nullptr)})
    EXPECT_EQ(kova_getManufacturerMac(unknown, out), -1);
  platform.sockets = false;
  EXPECT_EQ(kova_getManufacturerMac("eth1", out), -1);
}

} // namespace
