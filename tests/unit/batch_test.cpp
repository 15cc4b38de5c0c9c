// The batch validation: the nine groups of a request, each judged as a whole.
#include "fake/fake.hpp"

#include <kova/transaction.h>

#include <algorithm>
#include <sstream>

using fake::platform;
using fake::Strings;

namespace {

// The 65 parameters in the order of their slots, by a short name.
struct Parameter {
  std::string name;
  unsigned char *touched;
  PendingValue *slot;
};
// clang-format off
#define P(name, group, slot) {name, &gPVCL.group##Touched, &gPVCL.slot}
#define APN(n) P("apn" #n ".enable", wanApn, apn[n - 1].apnEnable), P("apn" #n ".use", wanApn, apn[n - 1].apnApplyTo), \
  P("apn" #n ".vid", wanApn, apn[n - 1].apnBridgeVid)
const Parameter parameters[] = {
    P("wifi.mode", wifi, wifiMode), P("wifi.rate", wifi, wifiRate), P("wifi.bandwidth", wifi, wifiBandwidth),
    P("lan.ip", lan, lanIpAddress), P("lan.mask", lan, lanSubnetMask), P("lan.dhcp", lan, dhcpServerEnable),
    P("lan.start", lan, dhcpPoolStart), P("lan.end", lan, dhcpPoolEnd), P("dns.option", dns, dnsOption),
    P("dns.1", dns, dns1), P("dns.2", dns, dns2), P("dns.3", dns, dns3), P("dl.state", downloadDiag, dlState),
    P("dl.if", downloadDiag, dlInterface), P("dl.url", downloadDiag, dlUrl), P("dl.dscp", downloadDiag, dlDscp),
    P("ul.state", uploadDiag, ulState), P("ul.if", uploadDiag, ulInterface), P("ul.url", uploadDiag, ulUrl),
    P("ul.length", uploadDiag, ulTestFileLength), P("ul.dscp", uploadDiag, ulDscp),
    P("echo.enable", udpEcho, udpEchoEnable), P("echo.if", udpEcho, udpEchoInterface),
    P("echo.source", udpEcho, udpEchoSourceIp), P("echo.port", udpEcho, udpEchoPort),
    P("echo.plus", udpEcho, udpEchoPlusEnabled), P("ping.state", ipPing, pingState), P("ping.host", ipPing, pingHost),
    P("ping.count", ipPing, pingCount), P("ping.timeout", ipPing, pingTimeout), P("ping.size", ipPing, pingDataSize),
    P("tr.state", traceRoute, trState), P("tr.host", traceRoute, trHost), P("tr.tries", traceRoute, trTryCount),
    P("tr.timeout", traceRoute, trTimeout), P("tr.size", traceRoute, trDataSize),
    P("tr.hops", traceRoute, trMaxHopCount), P("wan.mode", wanApn, operMode), P("wan.vpn", wanApn, vpnType),
    P("wan.bcp", wanApn, bcpEnable), P("wan.gre", wanApn, greType),
    APN(1), APN(2), APN(3), APN(4), APN(5), APN(6), APN(7), APN(8)};
// clang-format on

const Parameter &parameter(const std::string &name) {
  for (const Parameter &entry : parameters)
    if (name == entry.name) return entry;
  throw std::invalid_argument(name);
}

// Parks past the checkers: what they refuse still reaches the batch through an agent that does not ask them.
void park(const std::string &name, const std::string &value) {
  const Parameter &entry = parameter(name);
  pvcl_set_slot(entry.slot, entry.name.c_str(), value.c_str());
  *entry.touched = 1;
}

// A request as "name=value name=value".
void park(const std::string &request) {
  std::istringstream pairs(request);
  for (std::string pair; pairs >> pair;)
    park(pair.substr(0, pair.find('=')), pair.substr(pair.find('=') + 1));
}

// "passed", or the fault names. Whatever the verdict, nothing stays parked.
std::string validate(const std::string &request, int size = 1 << 20, const std::string &before = "") {
  static char names[1 << 20];
  std::snprintf(names, sizeof names, "%s", before.c_str());
  park(request);
  const int result = kovaCheckTR069ParameterValues(names, size);
  for (const Parameter &entry : parameters) {
    EXPECT_EQ(*entry.touched, 0) << entry.name;
    EXPECT_TRUE(entry.slot->name == nullptr && entry.slot->value == nullptr) << entry.name;
  }
  EXPECT_EQ(platform.oper_mode_records, 0);
  EXPECT_EQ(result, result == 0 ? 0 : -1);
  EXPECT_TRUE(result != 0 || names == before);
  return result == 0 ? "passed" : names;
}

class Batch : public fake::Test {
protected:
  Batch() { start_over(0); }

  // A device with a LAN, in the VPN mode, and profile 1 as its data bearer.
  static void start_over(uint32_t instance) {
    platform = {};
    gSecondaryInstance = instance;
    platform.preset(0, "lan_ip=192.168.1.1 lan_netmask=255.255.255.0 dhcpEnabled=1 dhcpStart=192.168.1.100 "
                       "dhcpEnd=192.168.1.200 primaryDNS=1.1.1.1 0_rfmode=GONLY Bandwidth=1 oper_mode=2 "
                       "DMZEnable=1 DMZNatEnable=kept ConnectLimitNatEnable=1");
    for (int number = 1; number <= 8; ++number) {
      const std::string path = "tarn/cm_config/apnprofile/apn" + std::to_string(number) + "/";
      platform.tree[path + "enable"] = number == 1 ? "1" : "0";
      platform.tree[path + "apply_to"] = number == 1 ? "0" : "3";
      platform.tree[path + "bridge_vid"] = number == 1 ? "10" : "0";
    }
  }
};

TEST_F(Batch, WifiModeMustGoWithBandwidthAndRate) {
  const char *rate = "wifi.rate=12", *all = "wifi.mode=N wifi.bandwidth=0 wifi.rate=3";
  struct {
    int bandwidth_answer, rate_answer;
    const char *request, *verdict;
    Strings asked;
  } const cases[] = {
      {0, 0, rate, "passed", {"mode/bandwidth GONLY 1", "mode/rate GONLY 12"}},
      {0, -2, rate, "wifi.rate", {"mode/bandwidth GONLY 1", "mode/rate GONLY 12"}},
      {-1, 0, rate, "", {"mode/bandwidth GONLY 1"}},                   // the request set neither
      {-2, 1, all, "passed", {"mode/bandwidth N 0", "mode/rate N 3"}}, // only -1 refuses a bandwidth
      {-1, -1, all, "wifi.mode;wifi.bandwidth", {"mode/bandwidth N 0"}},
      {0, -1, all, "wifi.mode;wifi.rate", {"mode/bandwidth N 0", "mode/rate N 3"}}};
  for (const auto &[bandwidth_answer, rate_answer, request, verdict, asked] : cases) {
    start_over(0);
    platform.mode_and_bandwidth = bandwidth_answer;
    platform.mode_and_rate = rate_answer;
    EXPECT_EQ(validate(request), verdict);
    EXPECT_EQ(platform.rules_asked, asked);
    EXPECT_TRUE(platform.done.empty());
  }
}

const Strings same_network = {"nvram 9 different_subnets=0", "nvram 9 dhcp_ipaddr_change=0"},
              new_address = {"nvram 9 dhcp_ip_changed=1", "nvram 9 different_subnets=0",
                             "nvram 9 dhcp_ipaddr_change=1"},
              new_network = {"nvram 9 dhcp_ip_changed=1",  "nvram 0 DMZEnable=0",
                             "nvram 0 DMZAddress=",        "nvram 0 PortForwardEnable=0",
                             "nvram 0 PortForwardRules=",  "nvram 0 IPPortFilterEnable=0",
                             "nvram 0 IPPortFilterRules=", "nvram 0 IPPortFilterWhiteRules=",
                             "nvram 9 different_subnets=1"};

TEST_F(Batch, LanAddressAndPoolMustFitWhileTheServerIsOn) {
  const char *move = "lan.end=10.0.0.9 lan.start=10.0.0.2 lan.ip=10.0.0.1";
  const struct {
    const char *dhcp, *request, *verdict; // the stored DHCP mode
    Strings done;
  } cases[] = {{"1", "lan.mask=255.255.255.0", "passed", same_network},
               {"1", "lan.ip=192.168.1.2", "passed", new_address},
               {"1", move, "passed", new_network},
               {"1", "lan.ip=192.168.1.100", "lan.ip", {}}, // the stored start
               {"1", "lan.end=192.168.1.250 lan.ip=192.168.1.250", "lan.ip;lan.end", {}},
               {"1", "lan.start=192.168.1.201 lan.dhcp=1", "lan.dhcp;lan.start", {}},
               {"1", "lan.ip=10.0.0.1", "lan.ip", {}},
               {"1", "lan.end=192.168.2.1", "lan.end", {}},
               {"1", "lan.mask=255.255.255.192", "lan.mask", {}},
               {"1x", "lan.end=192.168.2.1", "lan.end", {}},
               {"2", move, "lan.ip;lan.start;lan.end", {}}, // relay
               {"0", "lan.dhcp=2", "lan.dhcp", {}},
               {"2", "lan.dhcp=0 lan.ip=10.0.0.1", "passed", new_network}, // addresses are not looked at
               {"on", "lan.ip=192.168.1.100", "passed", new_address},
               {"", "lan.start=192.168.9.9", "passed", same_network}};
  for (const auto &[dhcp, request, verdict, done] : cases) {
    start_over(0);
    platform.nvram[{0, "dhcpEnabled"}] = dhcp;
    EXPECT_EQ(validate(request), verdict) << dhcp << " " << request;
    EXPECT_EQ(platform.done, done) << dhcp << " " << request;
  }
}

TEST_F(Batch, LanAndDnsNamesCountAsStoredWhenTheyHoldLocalAnywhere) {
  pvcl_set_slot(&gPVCL.lanIpAddress, "Device.LocalNet.IP", "10.0.0.1");
  EXPECT_EQ(validate("lan.end=10.0.0.9"), "lan.end");
  pvcl_set_slot(&gPVCL.dlState, "Device.LocalNet.State", "None"); // elsewhere only at the start
  pvcl_set_slot(&gPVCL.dlUrl, "Local.URL", "u");
  EXPECT_EQ(validate("dl.if=i"), "Device.LocalNet.State;dl.if");
}

TEST_F(Batch, DnsServersMustDiffer) {
  for (const std::string servers : {"dns.1=1.1.1.1 dns.2=2.2.2.2 dns.3=3.3.3.3",
                                    "dns.1=1.1.1.1 dns.2= dns.3=", "dns.1=1.1.1.1 dns.2= dns.3=3.3.3.3",
                                    "dns.1= dns.2=2.2.2.2 dns.3=3.3.3.3", "dns.1= dns.2=2.2.2.2 dns.3="})
    EXPECT_EQ(validate("dns.option=1 " + servers), "passed") << servers;
  for (const std::string servers :
       {"dns.1=1.1.1.1 dns.2=1.1.1.1 dns.3=", "dns.1=1.1.1.1 dns.2=2.2.2.2 dns.3=1.1.1.1",
        "dns.1=1.1.1.1 dns.2=2.2.2.2 dns.3=2.2.2.2", "dns.1= dns.2=2.2.2.2 dns.3=2.2.2.2",
        "dns.1=1.1.1.1 dns.2= dns.3=1.1.1.1", "dns.1= dns.2= dns.3=", "dns.1= dns.2= dns.3=3.3.3.3",
        "dns.1=1.0.0.1 dns.2=1.1 dns.3=", "dns.1=no dns.2=address dns.3=3.3.3.3",
        "dns.1= dns.2=255.255.255.255 dns.3="})
    EXPECT_EQ(validate("dns.option=1 " + servers), "dns.option;dns.1;dns.2;dns.3") << servers;
  EXPECT_EQ(validate("dns.2=1.1.1.1"), "dns.2"); // the stored first
  EXPECT_TRUE(platform.done.empty());
}

TEST_F(Batch, WhatCheckersRefuseIsKeptWithinLimits) {
  const std::pair<const char *, std::string> cases[] = {
      {"tr.tries=11 tr.timeout=999 tr.size=65001 tr.hops=256", "65000 -q 10 -m 255 -w 1,3,10"},
      {"tr.tries= tr.timeout= tr.size= tr.hops=", "38 -q 3 -m 30 -w 5,3,10"},
      {"tr.tries=2x tr.timeout=5999 tr.size=0 tr.hops=1", "0 -q 2x -m 1 -w 5,3,10"},
      {"tr.tries=-1 tr.timeout=x tr.size=-1 tr.hops=-1", "65000 -q 10 -m 255 -w 1,3,10"},
      {"", "38 -q 10 -m 30 -w 1,3,10"}};          // stored values are kept within the limits, too
  EXPECT_EQ(validate("echo.enable=2"), "passed"); // neither refused nor a wish to run it
  EXPECT_EQ(platform.done, Strings{"request 0x10000015 udpechoplus_server"});
  platform.nvram[{9, "TR_TRACEROUTEDIAG_TRYCNT"}] = "12";
  for (const auto &[request, options] : cases) {
    platform.done.clear();
    EXPECT_EQ(validate(std::string("tr.state=Requested tr.host=h ") + request), "passed");
    EXPECT_EQ(platform.done, Strings{"request 0x10000019 /bin/traceroute_diag h " + options + " --savetof"});
  }
}

TEST_F(Batch, ACommandLineHoldsAnyByteAndIsCutAt255) {
  std::string bytes;
  for (int byte = 255; byte > 0; --byte)
    bytes += static_cast<char>(byte);
  for (const std::string &url : {bytes.substr(bytes.size() - 200), bytes}) {
    platform.done.clear();
    park("dl.url", url);
    EXPECT_EQ(validate("dl.state=Requested dl.dscp=46"), "passed");
    const std::string line = "/bin/download_diag -u " + url + " -d 46";
    EXPECT_EQ(platform.done, Strings{"request 0x10000008 " + line.substr(0, 255)});
  }
}

TEST_F(Batch, OperationModeAndProfilesMustFit) {
  const std::pair<const char *, std::string> cases[] = {
      {"apn1.enable=0", "apn1.enable"}, // no data bearer is left
      {"apn1.use=1 apn2.enable=1 apn2.use=0", "passed"},
      {"apn8.vid= apn8.enable=1 wan.mode=0 apn8.use=0", "wan.mode;apn8.enable;apn8.use;apn8.vid"}, // two are
      {"apn8.enable=1 apn8.use=0 wan.mode=1", "passed"},
      // A VLAN of the request counts for a profile without a bearer only: this one keeps its stored VLAN.
      {"apn8.enable=1 apn8.use=0 apn8.vid=10 wan.mode=3", "passed"},
      {"apn2.enable=1 apn2.use=0 apn8.enable=1 apn8.use=0 wan.mode=3",
       "wan.mode;apn2.enable;apn2.use;apn8.enable;apn8.use"},
      {"apn2.enable=1 apn2.use=0 wan.vpn=1 wan.gre=1", "passed"},
      {"apn2.enable=1 apn2.use=0 wan.vpn=1 wan.bcp=1", "wan.vpn;wan.bcp;apn2.enable;apn2.use"}};
  for (const auto &[request, verdict] : cases) {
    start_over(0);
    EXPECT_EQ(validate(request), verdict);
    EXPECT_EQ(platform.written().empty(), verdict != "passed");
    EXPECT_EQ(platform.tree_opened, 0);
  }
}

TEST_F(Batch, NatSwitchesAreSavedAndRestored) {
  const Strings restored = {"nvram 0 DMZEnable=kept", "nvram 0 PortForwardEnable=",
                            "nvram 0 PortTriggerEnable=", "nvram 0 ConnectLimitEnable=1"};
  const auto saved = [](const std::string &dmz, const std::string &others) {
    Strings result = {"nvram 0 DMZNatEnable=" + dmz, "nvram 0 DMZEnable=0"};
    for (const std::string feature : {"PortForward", "PortTrigger", "ConnectLimit"})
      result.insert(result.end(),
                    {"nvram 0 " + feature + "NatEnable=" + others, "nvram 0 " + feature + "Enable=0"});
    return result;
  };
  for (const std::string mode : {"0", "1", "2", "3", "4"}) {
    start_over(0);
    platform.nvram[{0, "oper_mode"}] = "0"; // only the new mode counts
    EXPECT_EQ(validate("wan.mode=" + mode), "passed");
    const bool saves = mode == "1" || mode == "3";
    EXPECT_EQ(platform.written(), saves ? saved("1", "") : mode == "4" ? Strings{} : restored) << mode;
    if (!saves) continue;
    platform.done.clear();
    EXPECT_EQ(validate("wan.mode=" + mode), "passed");
    EXPECT_EQ(platform.written(), saved("0", "0")) << "the second saves what the first switched off";
  }
}

TEST_F(Batch, LeavingOrChangingTheVpnStopsIt) {
  const struct {
    const char *mode, *vpn, *request;
    bool stops;
  } cases[] = {{"2", "0", "wan.mode=0", true},  {"2", "0", "wan.mode=3", true},
               {"2", "0", "wan.vpn=1", true},   {"2", "1", "wan.vpn=x", true},
               {"2", "1", "wan.vpn=1", false},  {"2", "0", "wan.bcp=1", false},
               {"0", "0", "wan.mode=2", false}, {"0", "0", "wan.vpn=1", false},
               {"3", "1", "wan.mode=1", false}, {"2", "0", "apn2.use=1", false}};
  for (const auto &[mode, vpn, request, stops] : cases) {
    start_over(0);
    platform.nvram[{0, "oper_mode"}] = mode;
    platform.nvram[{0, "vpn_type"}] = vpn;
    EXPECT_EQ(validate(request), "passed");
    EXPECT_EQ(platform.done.back() == "run test_cpeevent call \"ce_vpn stop\"", stops) << mode << request;
  }
}

TEST_F(Batch, WhatCannotBeLoadedRefusesTheRequest) {
  const char *request = "apn3.use=1 wan.mode=0 dl.state=Requested";
  for (const int loads : {0, 1}) { // the record as it is, and as it will be
    platform.oper_mode_loads = loads;
    EXPECT_EQ(validate(request), "");
    EXPECT_TRUE(platform.done.empty());
  }
  start_over(0);
  platform.tree_opens = false;
  EXPECT_EQ(validate(request), "wan.mode;apn3.use");
  for (const char *leaf : {"apn1/enable", "apn5/apply_to", "apn8/bridge_vid"}) {
    start_over(0);
    platform.tree.erase(std::string("tarn/cm_config/apnprofile/") + leaf);
    EXPECT_EQ(validate(request), "wan.mode;apn3.use") << leaf;
    EXPECT_EQ(platform.done, Strings{"tree open"}) << "left open";
  }
}

TEST_F(Batch, WanNamesStayWithinTheBufferAndOthersAreUnbounded) {
  EXPECT_EQ(validate("dl.state=None", 1, "Before"), "Before;dl.state");
  park("dl.state=None");
  EXPECT_EQ(kovaCheckTR069ParameterValues(nullptr, 0), -1);
  for (const std::string before : {"", "A.B"})
    for (int size = -1; size < 30; ++size) {
      start_over(0);
      const std::string all = before + (before.empty() ? "" : ";") + "wan.mode;apn1.enable";
      const auto kept = std::max(static_cast<std::size_t>(std::max(size, 1)) - 1, before.size());
      EXPECT_EQ(validate("apn1.enable=0 wan.mode=0", size, before), all.substr(0, kept)) << size;
    }
}

// One parameter of each group, enough to launch every test.
const std::string of_every_group = "wifi.rate=12 lan.ip=192.168.1.2 dns.2=8.8.8.8 dl.state=Requested "
                                   "ul.state=Requested echo.enable=1 ping.state=Requested "
                                   "tr.state=Requested wan.mode=4 ";

TEST_F(Batch, TestsAreLaunchedAfterAllGroupsHavePassed) {
  Strings expected = new_address;
  expected.emplace_back("run test_cpeevent call \"ce_vpn stop\"");
  platform.daemon = false; // nobody to ask: the request passes all the same
  EXPECT_EQ(validate(of_every_group), "passed");
  EXPECT_EQ(platform.written(), expected);

  start_over(0);
  expected.insert(expected.end(),
                  {"request 0x10000008 /bin/download_diag -u ",
                   "request 0x10000011 /bin/upload_diag -u  -l 1024",
                   "request 0x10000014 /bin/udpechoplus_server -p ",
                   "request 0x10000016 /bin/ping_diag -H  -c 4 -W 1 -s 56",
                   "request 0x10000019 /bin/traceroute_diag  38 -q 3 -m 30 -w 1,3,10 --savetof"});
  EXPECT_EQ(validate(of_every_group), "passed");
  EXPECT_EQ(platform.written(), expected);
}

TEST_F(Batch, TheFirstFailureEndsIt) {
  // What the request has besides, and the verdict.
  const std::pair<const char *, const char *> cases[] = {
      {"wifi.mode=N", "wifi.mode;wifi.rate"},
      {"lan.start=192.168.1.2", "lan.ip;lan.start"},
      {"dns.2=1.1.1.1", "dns.2"},
      {"dl.url=u dl.state=None", "dl.state;dl.url"},
      {"ul.dscp=1 ul.length=2 ul.state=", "ul.state;ul.length;ul.dscp"},
      {"ping.state=requested", "ping.state"},
      {"tr.hops=2 tr.host=h tr.state=Requested2", "tr.state;tr.host;tr.hops"},
      {"apn1.enable=0", "wan.mode;apn1.enable"}};
  for (const auto &[failing, verdict] : cases) {
    start_over(0);
    const Parameter &culprit = parameter(std::string(failing).substr(0, std::string(failing).find('=')));
    if (culprit.touched == &gPVCL.wifiTouched) platform.mode_and_rate = -1;
    bool looked_further = false;
    platform.watch = [&] {
      for (const Parameter &later : parameters)
        looked_further |= later.touched > culprit.touched && pvcl_slot_name(later.slot)[0] == 'L';
    };
    EXPECT_EQ(validate(of_every_group + failing), verdict);
    EXPECT_EQ(platform.written(), culprit.touched > &gPVCL.lanTouched ? new_address : Strings{}) << failing;
    EXPECT_FALSE(looked_further) << failing;
  }
}

} // namespace
