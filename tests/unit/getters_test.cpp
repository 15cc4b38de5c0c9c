// What every getter does with a small buffer, and with none.
#include "fake/fake.hpp"
#include "management/management.h"
#include "radio/radio.h"
#include "time/time.h"
#include "wan/wan.h"

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

// Other answers that fill the buffer, without a terminator when they do not fit.
kova_getter *const plain[] = {
    kovaGetTR069ManagementServerURL, kovaGetTR069ManagementServerUsername,
    kovaGetTR069ManagementServerPassword, kovaGetTR069PeriodicInformEnable,
    kovaGetTR069PeriodicInformInterval, kovaGetTR069PeriodicInformTime, kovaGetTR069ParameterKey,
    kovaGetTR069ConnectionRequestURL, kovaGetTR069ConnectionRequestUsername,
    kovaGetTR069ConnectionRequestPassword, kovaGetTR069UDPConnectionRequestAddress,
    kovaGetTR069UDPConnectionRequestAddressNotificationLimit, kovaGetTR069STUNEnable,
    kovaGetTR069STUNServerAddress, kovaGetTR069STUNServerPort, kovaGetTR069STUNMaximumKeepAlivePeriod,
    kovaGetTR069STUNMinimumKeepAlivePeriod, kovaGetTR069STUNUsername, kovaGetTR069STUNPassword,
    kovaGetTR069NatDetected, kovaGetTR069X_FingerPrintEnable, kovaGetTR069X_STUNRealm, kovaGetTR069X_Loglevel,
    kovaGetTR069SSLCert, kovaGetTR069SSLCaCert, kovaGetTR069SSLEnable, kovaGetWLANConfigurationTotalBytesSent,
    kovaGetWLANConfigurationTotalBytesReceived, kovaGetWLANConfigurationTotalPacketsSent,
    kovaGetWLANConfigurationTotalPacketsReceived, kovaGetTR069SoftwareVersion, kovaGetTR069SerialNumber,
    kovaGetTR069HardwareVersion, kovaGetTR069UpTime, kovaGetTR069ConntionTime, kovaGetTR069MemoryStatusTotal,
    kovaGetTR069MemoryStatusFree, kovaGetTR069CellIDValue, kovaGetTR069EnbIdValue, kovaGetTR069PCIValue,
    kovaGetTR069RSSIValue, kovaGetTR069RSRQValue, kovaGetTR069SINRValue, kovaGetTR069TXPWRValue,
    kovaGetTR069RSRP0Value, kovaGetTR069RSRP1Value, kovaGetTR069CINR0Value, kovaGetTR069CINR1Value,
    kovaGetTR069DLFrequencyValue, kovaGetTR069ULFrequencyValue, kovaGetTR069BandwidthValue,
    kovaGetTR069BandValue, kovaGetTR069EARFCNValue, kovaGetTR069LTEStatus, kovaGetTR069RxPacketsValue,
    kovaGetTR069TxPacketsValue, kovaGetTR069RxBytesValue, kovaGetTR069TxBytesValue,
    kovaGetTR069Apn1RecvRateValue, kovaGetTR069Apn1SendRateValue, kovaGetTR069Apn1RecvTotTptValue,
    kovaGetTR069Apn1SendTotTptValue, kovaGetTR069Apn1RecvTotPktValue, kovaGetTR069Apn1SendTotPktValue,
    kovaGetTR069WANDLCurRateValue, kovaGetTR069WANULCurRateValue, kovaGetTR069WANDLMinRateValue,
    kovaGetTR069WANDLMaxRateValue, kovaGetTR069WANULMinRateValue, kovaGetTR069WANULMaxRateValue,
    kovaGetTR069WANUplinkRateValue, kovaGetTR069WANDownlinkRateValue, kovaGetTR069CloudkeyValue,
    kovaGetTR069NickNameValue, kovaGetTR069HttpsEnable, kovaGetTR069HttpsWanEnable, kovaGetTR069HttpsPort,
    kovaGetTR069ScanMode, kovaGetTR069PciLock, kovaGetTR069PciOnlyLock, kovaGetTR069FreqPreferred,
    kovaGetTR069ManageableDeviceNumberOfEntries, kovaGetWANDevicePhysicalLinkStatus, kovaGetWANTotalBytesSent,
    kovaGetWANTotalBytesReceived, kovaGetWANTotalPacketsSent, kovaGetWANTotalPacketsReceived,
    kovaGetTR069WANConnectionConnectionStatus, kovaGetTR069WANConnectionMACAddress, kovaGetTR069WANSubnetMask,
    kovaGetTR069WANGatewayAddress, kovaGetTR069WANConnectionExternalIPAddress, kovaGetDeviceTimeNTPServer,
    kovaGetLocalTimeZone, kovaGetDaylightSavingsUsed,};

// Answers that are cut to leave room for the terminator.
kova_getter *const terminated[] = {
    kovaGetTR069DLMcsValue, kovaGetTR069ULMcsValue, kovaGetTR069LTEDnsServer, kovaGetTR069APN1IPAddress,
    kovaGetTR069APN2IPAddress, kovaGetTR069APN3IPAddress, kovaGetTR069APN4IPAddress, kovaGetTR069WANIPAddress,};

// Answers that do not look at the size.
kova_getter *const whole[] = {
    kovaGetTR069DeviceLog, kovaGetCurrentLocalTime, kovaGetDaylightSavingsStart, kovaGetDaylightSavingsEnd,
    kovaGetNTPApply,};
// clang-format on

class Getters : public fake::Test {
protected:
  // A device on which every parameter has a value: whatever is read is a number, a record, a pair and a list.
  Getters() {
    platform.interfaces = {{"lte0", "100.64.0.9", "255.192.0.0", -1, "00:00:00:00:00:02"}};
    for (int pdn = 0; pdn < 4; ++pdn)
      platform.interfaces.push_back({"lte0pdn" + std::to_string(pdn), "10.0.0.1", "255.0.0.0"});
    platform.files["/var/rate_info"] = "1000: 200 1 2 50 3 4\n990: 100 1 2 40 3 4\n";
    platform.files["/proc/net/route"] = "lte0\t00000000\t01004064\t0003\t0\t0\t0\t00000000\n";
    setBindInterface("lte0");
    char buf[256];
    for (kova_getter *getter : plain)
      getter(buf, sizeof buf);
    for (kova_getter *getter : terminated)
      getter(buf, sizeof buf);
    for (const Stored &setting : stored)
      setting.get(buf, sizeof buf);
    for (const std::string &key : platform.keys_read)
      if (key.starts_with("/"))
        platform.tree[key.substr(1)] = "3,3,3";
      else
        platform.nvram[{key[0] - '0', key.substr(2)}] = "3 3,3,3,3,3,3,3";
    platform.tree["tarn/cell_selection/dedicated_duplex"] = "TDD";
    platform.tree["tarn/cell_selection/tdd_dedicated_pci_list"] = "3,1300,1";
    platform.tree["tarn/cell_selection/tdd_dedicated_earfcn_list"] = "3,1300";
    platform.nvram[{0, "/tarn/cell_selection/dedicated_duplex"}] = "TDD";
  }
};

TEST_F(Getters, TellWhatIsStored) {
  const std::string value(300, 'v');
  gSecondaryInstance = 1; // these are the same for both instances
  platform.nvram.clear();
  for (const Stored &setting : stored) {
    SCOPED_TRACE(setting.key);
    EXPECT_EQ(get(setting.get), "");
    platform.nvram = {{{setting.section, setting.key}, value}};
    EXPECT_EQ(get(setting.get, 4096), setting.whole ? value : value.substr(0, 255));
    for (const unsigned int buflen : {0U, 1U, 255U})
      EXPECT_EQ(get(setting.get, buflen), value.substr(0, buflen));
    setting.get(nullptr, 256);
  }
}

TEST_F(Getters, FillASmallBufferAndNoMore) {
  int empty = 0;
  for (std::size_t i = 0; i < std::size(plain); ++i) {
    SCOPED_TRACE(i);
    const std::string text = get(plain[i]);
    ASSERT_LT(text.size(), 256U);
    empty += text.empty() ? 1 : 0;
    const auto length = static_cast<unsigned int>(text.size());
    for (const unsigned int buflen : {0U, 1U, length, length + 1})
      EXPECT_EQ(get(plain[i], buflen), text.substr(0, buflen));
    plain[i](nullptr, 256);
  }
  EXPECT_EQ(empty, 3) << "more than the three parameters that tell nothing";
}

TEST_F(Getters, CutToLeaveRoomForTheTerminator) {
  for (kova_getter *getter : terminated) {
    const std::string text = get(getter);
    const auto length = static_cast<unsigned int>(text.size());
    EXPECT_GT(length, 0U);
    for (const unsigned int buflen : {0U, 1U, length, length + 1})
      EXPECT_EQ(get(getter, buflen), text.substr(0, buflen > 0 ? buflen - 1 : 0));
    EXPECT_EQ(getter(nullptr, 0), getter(nullptr, 256));
  }
  for (kova_getter *getter : {kovaGetTR069MCCValue, kovaGetTR069MNCValue}) {
    for (const unsigned int buflen : {0U, 1U, 3U})
      EXPECT_EQ(get(getter, buflen), std::string(buflen, '#'));
    EXPECT_EQ(getter(nullptr, 256), 0);
  }
}

TEST_F(Getters, WithoutABufferNothingIsWritten) {
  for (kova_getter *getter : whole)
    getter(nullptr, 256);
}

} // namespace
