// Settings that are told as they are stored.
#include "fake/fake.hpp"

#include <kova/management.h>
#include <kova/radio.h>
#include <kova/time.h>
#include <kova/wan.h>

using fake::get;
using fake::platform;

namespace {

// clang-format off
// Settings as stored; the manufacturer's may be longer than others.
struct Stored {
  kova_getter *get;
  int section;
  const char *key;
  bool whole = false;
} const stored[] = {
    {kovaGetTR069DeviceSummary, 0, "TR_DEVSUM", true}, {kovaGetTR069Manufacturer, 0, "TR_MF", true},
    {kovaGetTR069ManufacturerOUI, 0, "TR_OUI", true}, {kovaGetTR069ModelName, 0, "ProductName", true},
    {kovaGetTR069Description, 0, "WEB_NAME", true}, {kovaGetTR069ProductClass, 0, "TR_ProductClass", true},
    {kovaGetTR069SpecVersion, 0, "TR_SpecVer", true}, {kovaGetTR069ProvisioningCode, 0, "TR_PROVCODE", true},
    {kovaGetTR069AdditionalSoftwareVersion, 0, "TR_AddSoftVer"},
    {kovaGetTR069ModemFirmwareVersion, 9, "TR_MODEM_VER"}, {kovaGetTR069MapnQos, 0, "/cwmp/MapnQos"},
    {kovaGetTR069ECGIValue, 9, "lte_cur_ecgi"}, {kovaGetTR069PLMNValue, 9, "lte_cur_plmn"},
    {kovaGetTR069CQI0Value, 9, "lte_cqi0"}, {kovaGetTR069CQI1Value, 9, "lte_cqi1"},
    {kovaGetTR069RoamValue, 9, "lte_roam_state"}, {kovaGetTR069IMSIValue, 9, "imsi_infostr"},
    {kovaGetTR069IMEIValue, 9, "imei_infostr"}, {kovaGetTR069WANDLBler, 9, "lte_bler_stat"},
    {kovaGetTR069LTEMode, 0, "/tarn/cell_selection/dedicated_duplex"},
    {kovaGetTR069LTEOperator, 0, "/cwmp/Operator"},
    {kovaGetTR069LANDeviceNumberOfEntries, 0, "TR_LAN_DEV_NUM"},
    {kovaGetTR069WANDeviceNumberOfEntries, 0, "TR_WAN_DEV_NUM"},
    {kovaGetWANConnectionSubnetMask, 9, "wan_netmask"}, {kovaGetWANConnectionX_MTU, 0, "internet_mtu"},
    {getTR069DMZEnable, 0, "DMZEnable"}, {getTR069DMZHostAddress, 0, "DMZAddress"},
    {kovaGetALGSIPEnable, 0, "SIPAlgEnable"},};
// clang-format on

class Getters : public fake::Test {};

TEST_F(Getters, TellWhatIsStored) {
  const std::string value(300, 'v');
  gSecondaryInstance = 1; // these are the same for both instances
  for (const Stored &setting : stored) {
    SCOPED_TRACE(setting.key);
    EXPECT_EQ(get(setting.get), "");
    platform.nvram = {{{setting.section, setting.key}, value}};
    EXPECT_EQ(get(setting.get, 4096), setting.whole ? value : value.substr(0, 255));
  }
}

} // namespace
