#include "cases.hpp"

#include "platform/host/nvram_admin.hpp"
#include "platform/host/tree_admin.hpp"
#include "platform/nvram.h"
#include "platform/ucfg.h"
#include "platform/webs.h"

#include <benchmark/benchmark.h>
#include <kova/diagnostics.h>
#include <kova/lan.h>
#include <kova/network.h>
#include <kova/transaction.h>
#include <kova/voice.h>
#include <kova/wan.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace bench {

namespace {

constexpr int config = 0, runtime = 9;

void expect(bool condition) {
  if (condition) return;
  std::fputs("bench: a call did not do its work\n", stderr);
  std::abort();
}

// ---- A getter

void get_library() {
  char value[256];
  expect(getTR069LANIPAddress(value, sizeof value) == 0);
  benchmark::DoNotOptimize(value);
}

void get_direct() {
  char scratch[256] = {}, value[256];
  expect(nvram_bufget_string(config, "lan_ip", scratch, sizeof scratch) == 1);
  std::strncpy(value, scratch, sizeof value);
  benchmark::DoNotOptimize(value);
}

// ---- A plain setter

void set_library() {
  expect(kovasetDHCPServerEnableValue("1") == 0);
}

void set_direct() {
  expect(tarn_check_param(3, "1", 8) >= 0);
  nvram_bufset(config, "dhcpEnabled", "1");
}

// ---- A request that moves the LAN address and its pool within the network

constexpr const char *address = "192.168.1.2", *start = "192.168.1.50", *end = "192.168.1.60";

void lan_library() {
  char faults[256] = "";
  expect(chkTR069LANIPAddress("A", address) == 0 && chkTR069DHCPPoolStartIP("B", start) == 0 &&
         chkTR069DHCPPoolEndIP("C", end) == 0);
  expect(kovaCheckTR069ParameterValues(faults, sizeof faults) == 0);
}

void lan_calls(const char *mask) {
  char stored[256] = {};
  expect(IPRangeCheck(address, mask, start, end) != 0 && webscheckIpStartEnd(start, end) != 0);
  expect(websIP2Num(address) != websIP2Num(start) && websIP2Num(address) != websIP2Num(end));
  nvram_bufget_string(config, "lan_ip", stored, sizeof stored);
  nvram_bufset(runtime, "dhcp_ip_changed", "1");
  expect(webscheckSameSubnet(address, mask, stored) != 0);
  nvram_bufset(runtime, "different_subnets", "0");
  nvram_bufset(runtime, "dhcp_ipaddr_change", "1");
}

void lan_rules() {
  expect(tarn_check_param(3, address, 9) >= 0 && tarn_check_param(3, start, 11) >= 0 &&
         tarn_check_param(3, end, 12) >= 0);
}

void lan_direct() {
  char mask[256] = {}, dhcp[256] = {};
  lan_rules();
  nvram_bufget_string(config, "lan_netmask", mask, sizeof mask);
  nvram_bufget_string(config, "dhcpEnabled", dhcp, sizeof dhcp);
  lan_calls(mask);
}

// ---- A request that sets all 65 grouped parameters

struct Pair {
  kova_checker *check;
  const char *value;
};

#define APN(n, enable, bearer)                                                                               \
  {chkTR069APN##n##Enable, enable}, {chkTR069APN##n##ApplyTo, bearer}, {                                     \
    chkTR069APN##n##BridgeVID, "10"                                                                          \
  }
const Pair all_parameters[] = {{chkTR069WifiMode, "BGN"},
                               {chkTR069WifiRate, "0"},
                               {chkTR069WifiBandwidth, "1"},
                               {chkTR069LANIPAddress, address},
                               {chkTR069LANSubnetMask, "255.255.255.0"},
                               {chkTR069DHCPServerEnable, "1"},
                               {chkTR069DHCPPoolStartIP, start},
                               {chkTR069DHCPPoolEndIP, end},
                               {chkTR069DnsOption, "0"},
                               {chkTR069Dns1, "9.9.9.9"},
                               {chkTR069Dns2, "8.8.8.8"},
                               {chkTR069Dns3, "8.8.4.4"},
                               {chkTR069DownloadDiagnosticsState, "Requested"},
                               {chkTR069DownloadDiagnosticsInterface, ""},
                               {chkTR069DownloadDiagnosticsURL, "http://127.0.0.1/"},
                               {chkTR069DownloadDiagnosticsDSCP, "0"},
                               {chkTR069UploadDiagnosticsState, "Requested"},
                               {chkTR069UploadDiagnosticsInterface, ""},
                               {chkTR069UploadDiagnosticsURL, "http://127.0.0.1/"},
                               {chkTR069UploadDiagnosticsTestFileLength, "1000"},
                               {chkTR069UploadDiagnosticsDSCP, "0"},
                               {chkTR069UDPEchoConfigEnable, "1"},
                               {chkTR069UDPEchoConfigInterface, ""},
                               {chkTR069UDPEchoConfigSourceIPAddress, ""},
                               {chkTR069UDPEchoConfigUDPPort, "7"},
                               {chkTR069UDPEchoConfigEchoPlusEnabled, "1"},
                               {chkTR069IPPingDiagnosticsState, "Requested"},
                               {chkTR069IPPingDiagnosticsHost, "127.0.0.1"},
                               {chkTR069IPPingDiagnosticsCount, "3"},
                               {chkTR069IPPingDiagnosticsTimeout, "1000"},
                               {chkTR069IPPingDiagnosticsDataSize, "56"},
                               {chkTR069TraceRouteDiagnosticsState, "Requested"},
                               {chkTR069TraceRouteDiagnosticsHost, "127.0.0.1"},
                               {chkTR069TraceRouteDiagnosticsTryCnt, "3"},
                               {chkTR069TraceRouteDiagnosticsTimeout, "1000"},
                               {chkTR069TraceRouteDiagnosticsDataSize, "38"},
                               {chkTR069TraceRouteDiagnosticsMaxHopCnt, "30"},
                               {chkTR069WanSettingOperMode, "0"},
                               {chkTR069WanSettingVPNType, "0"},
                               {chkTR069WanSettingBCPEnable, "0"},
                               {chkTR069WanSettingGREType, "0"},
                               APN(1, "1", "0"),
                               APN(2, "1", "1"),
                               APN(3, "0", "3"),
                               APN(4, "0", "3"),
                               APN(5, "0", "3"),
                               APN(6, "0", "3"),
                               APN(7, "0", "3"),
                               APN(8, "0", "3")};
#undef APN
static_assert(sizeof all_parameters / sizeof *all_parameters == 65);

void full_library() {
  char faults[256] = "";
  for (const auto &[check, value] : all_parameters)
    expect(check("N", value) == 0);
  expect(kovaCheckTR069ParameterValues(faults, sizeof faults) == 0);
}

// The five launch requests end at the missing socket of the service daemon.
void look_for_daemon() {
  struct stat facts;
  for (int request = 0; request < 5; ++request)
    stat("/tmp/mrhd_socket", &facts);
}

void full_direct() {
  expect(tarn_check_param(1, "BGN", 2) >= 0 && tarn_check_param(1, "0", 17) >= 0 &&
         tarn_check_param(1, "1", 19) >= 0);
  lan_rules();
  expect(tarn_check_param(3, "255.255.255.0", 10) >= 0 && tarn_check_param(3, "1", 8) >= 0);
  expect(tarn_check_param(3, "0", 27) >= 0);
  for (const char *server : {"9.9.9.9", "8.8.8.8", "8.8.4.4"})
    expect(tarn_check_param(3, server, 28) >= 0);
  for (int item : {0, 1, 4, 10})
    expect(tarn_check_param(9, "0", item) >= 0);

  expect(CheckRFModeAndBW("BGN", "1") != -1 && CheckRFModeAndRate("BGN", "0") >= 0);
  lan_calls("255.255.255.0");
  OperMode *before = getOperModeFromNvram(), *after = getOperModeFromNvram();
  expect(init_ucfg_ex() == 0);
  for (int profile = 1; profile <= 8; ++profile)
    for (const char *leaf : {"enable", "apply_to", "bridge_vid"}) {
      char path[256], text[256];
      std::snprintf(path, sizeof path, "tarn/cm_config/apnprofile/apn%d/%s", profile, leaf);
      expect(read_ucfg_xml(0, path, text) == 0);
    }
  deinit_ucfg_ex(1);
  static constexpr const char *switches[][2] = {{"DMZEnable", "DMZNatEnable"},
                                                {"PortForwardEnable", "PortForwardNatEnable"},
                                                {"PortTriggerEnable", "PortTriggerNatEnable"},
                                                {"ConnectLimitEnable", "ConnectLimitNatEnable"}};
  for (const auto &[enable, kept] : switches) {
    char value[256] = {};
    nvram_bufget_string(config, kept, value, sizeof value);
    nvram_bufset(config, enable, value);
  }
  OperMode_delete(after);
  OperMode_delete(before);
  look_for_daemon();
}

// ---- Setting the last row of a list of 1, 8 and 16 rows

// A speed-dial row: dial number, real number, note.
std::string dial_row(int number) {
  return std::to_string(number) + ",55500" + std::to_string(number) + ",n";
}

template <int rows>
const std::string &dial_list() {
  static const std::string list = [] {
    std::string text = dial_row(1);
    for (int row = 2; row <= rows; ++row)
      text += ";" + dial_row(row);
    return text;
  }();
  return list;
}

template <int rows>
void list_library() {
  static const std::string row = dial_row(rows);
  nvram_bufset(config, "SPEEDDialLists", dial_list<rows>().c_str());
  expect(kovaSetQuickdialRule(rows, row.c_str()) == 0);
}

template <int rows>
void list_direct() {
  static const std::string number = std::to_string(rows), real = "55500" + number;
  nvram_bufset(config, "SPEEDDialLists", dial_list<rows>().c_str());
  std::free(nvram_bufget(config, "SPEEDDialLists"));
  expect(tarn_check_param(29, number.c_str(), 0) >= 0 && tarn_check_param(29, real.c_str(), 1) >= 0 &&
         tarn_check_param(29, "n", 2) >= 0);
  std::free(nvram_bufget(config, "SPEEDDialLists"));
  nvram_bufset(config, "SPEEDDialLists", dial_list<rows>().c_str());
}

constexpr Case all_cases[] = {{"getter", get_library, get_direct, 1.15},
                              {"plain setter", set_library, set_direct, 1.15},
                              {"LAN batch", lan_library, lan_direct, 1.5},
                              {"65-slot batch", full_library, full_direct, 1.5},
                              {"list of 1 row", list_library<1>, list_direct<1>, 1.5},
                              {"list of 8 rows", list_library<8>, list_direct<8>, 1.5},
                              {"list of 16 rows", list_library<16>, list_direct<16>, 1.5}};

} // namespace

std::span<const Case> cases() {
  return all_cases;
}

void prepare() {
  std::vector<kova::host::NvramEntry> entries = {{config, "lan_ip", "192.168.1.1"},
                                                 {config, "lan_netmask", "255.255.255.0"},
                                                 {config, "dhcpEnabled", "1"},
                                                 {config, "oper_mode", "0"},
                                                 {config, "vpn_type", "0"}};
  for (int filler = 0; filler < 1000; ++filler)
    entries.push_back({config, "setting_" + std::to_string(filler), "a value of plausible length"});
  kova::host::nvram_store(entries);
  std::vector<kova::host::TreeLeaf> leaves;
  for (int profile = 1; profile <= 8; ++profile) {
    const std::string node = "/tarn/cm_config/apnprofile/apn" + std::to_string(profile) + "/";
    leaves.emplace_back(node + "enable", profile == 1 ? "1" : "0");
    leaves.emplace_back(node + "apply_to", profile == 1 ? "0" : "3");
    leaves.emplace_back(node + "bridge_vid", "10");
  }
  kova::host::tree_store(leaves);
}

} // namespace bench
