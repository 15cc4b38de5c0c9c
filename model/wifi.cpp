#include "model/rows.hpp"

#include <kova/lan.h>

namespace kova::model {
namespace {

// clang-format off
#define RADIO      "InternetGatewayDevice.LANDevice.1.WLANConfiguration.1."
#define NETWORK(n) RADIO "X_KOVA_SSID." #n "."

#define FURTHER_NETWORK(n) \
    READ_WRITE(NETWORK(n) "Enable", Boolean, getTR069WifiMutiStatus##n, setTR069WifiMutiStatus##n, \
               "", "Whether this further network is on"), \
    READ_WRITE(NETWORK(n) "SSID", String, getTR069WifiMutiSSID##n, setTR069WifiMutiSSID##n, \
               "", "Name of this further network"), \
    READ_WRITE(NETWORK(n) "HideSSID", Boolean, getTR069WifiMutiHideSSID##n, setTR069WifiMutiHideSSID##n, \
               "", "Whether the network's name is kept out of its beacons"), \
    READ_WRITE(NETWORK(n) "APIsolate", Boolean, getTR069WifiAPIsolate##n, setTR069WifiAPIsolate##n, \
               "", "Whether the network's clients are kept from each other"), \
    READ_WRITE(NETWORK(n) "Encryption", String, getTR069WifiEncryption##n, setTR069WifiEncryption##n, \
               "", "Security mode: OPEN, WPA, WPA2 or WPAWPA2"), \
    READ_WRITE(NETWORK(n) "KeyPassphrase", String, getTR069WifiPassPhrase##n, setTR069WifiPassPhrase##n, \
               "", "Pass phrase, shown as it is stored"), \
    READ_ONLY (NETWORK(n) "DeviceList", String, getTR069WifiDeviceList##n, \
               "", "Stations: address, association id, mode, bandwidths sent and received; joined by a semicolon"),

constexpr Parameter rows[] = {
    // The radio. Only some modes, rates and bandwidths go together.
    READ_WRITE(RADIO "RadioEnabled", Boolean, getTR069WifiEnable, setTR069WifiEnable,
               "", "Whether the radio is on, and with it the main network"),
    CHECKED   (RADIO "X_KOVA_Mode", String, getTR069WifiMode, setTR069WifiMode, chkTR069WifiMode,
               "", "Network mode of the radio, for example GONLY; must go with rate and bandwidth"),
    CHECKED   (RADIO "X_KOVA_Rate", UnsignedInt, getTR069WifiRate, setTR069WifiRate, chkTR069WifiRate,
               "", "Fixed rate, an index from 0 to 12"),
    CHECKED   (RADIO "X_KOVA_Bandwidth", UnsignedInt,
               getTR069WifiBandwidth, setTR069WifiBandwidth, chkTR069WifiBandwidth,
               "", "Channel bandwidth, 0 or 1"),
    READ_WRITE(RADIO "Channel", UnsignedInt, getTR069WifiChannel, setTR069WifiChannel,
               "", "Channel of the radio"),

    // The main network.
    READ_WRITE(RADIO "SSID", String, getTR069WifiSSID0, setTR069WifiSSID0,
               "", "Name of the main network"),
    READ_WRITE(RADIO "X_KOVA_HideSSID", Boolean, getTR069WifiHideSSID0, setTR069WifiHideSSID0,
               "", "Whether the network's name is kept out of its beacons"),
    READ_WRITE(RADIO "X_KOVA_APIsolate", Boolean, getTR069WifiAPIsolate0, setTR069WifiAPIsolate0,
               "", "Whether the network's clients are kept from each other"),
    READ_WRITE(RADIO "X_KOVA_Encryption", String, getTR069WifiEncryption0, setTR069WifiEncryption0,
               "", "Security mode: OPEN, WPA, WPA2 or WPAWPA2"),
    READ_WRITE(RADIO "KeyPassphrase", String, getTR069WifiPassPhrase0, setTR069WifiPassPhrase0,
               "", "Pass phrase, shown as it is stored"),
    READ_ONLY (RADIO "X_KOVA_DeviceList", String, getTR069WifiDeviceList0,
               "", "Stations: address, association id, mode, bandwidths sent and received; joined by a semicolon"),

    FURTHER_NETWORK(1) FURTHER_NETWORK(2) FURTHER_NETWORK(3)
};
// clang-format on

} // namespace

std::span<const Parameter> wifi_rows() {
  return rows;
}

} // namespace kova::model
