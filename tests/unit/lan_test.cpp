// LAN, DHCP and the Ethernet port.
#include "fake/fake.hpp"
#include "lan/lan.h"

using fake::get;
using fake::platform;
using fake::Strings;

namespace {

class Lan : public fake::Test {
protected:
  Lan() {
    platform.nvram = {{{0, "lan_ip"}, "192.168.1.1"},    {{0, "lan_netmask"}, "255.255.255.0"},
                      {{0, "dhcpEnabled"}, "1"},         {{0, "dhcpStart"}, "192.168.1.100"},
                      {{0, "dhcpEnd"}, "192.168.1.200"}, {{0, "DMZEnable"}, "1"},
                      {{0, "PortForwardRules"}, "a,b,c"}};
  }
};

const Strings rules_dropped = {"nvram 0 DMZEnable=0",
                               "nvram 0 DMZAddress=",
                               "nvram 0 PortForwardEnable=0",
                               "nvram 0 PortForwardRules=",
                               "nvram 0 IPPortFilterEnable=0",
                               "nvram 0 IPPortFilterRules=",
                               "nvram 0 IPPortFilterWhiteRules="};

TEST_F(Lan, TransactionSettersStoreAndRestartTheDhcpServer) {
  struct {
    kova_setter *set;
    kova_getter *get;
    const char *key;
    bool may_be_empty;
  } const settings[] = {{setTR069LANIPAddress, getTR069LANIPAddress, "lan_ip", false},
                        {setTR069LANSubnetMask, getTR069LANSubnetMask, "lan_netmask", false},
                        {setTR069DHCPServerEnable, getTR069DHCPServerEnable, "dhcpEnabled", false},
                        {setTR069DHCPPoolStartIP, getTR069DHCPPoolStartIP, "dhcpStart", false},
                        {setTR069DHCPPoolEndIP, getTR069DHCPPoolEndIP, "dhcpEnd", false},
                        {setTR069Dns1, getTR069Dns1, "primaryDNS", false},
                        {setTR069Dns2, getTR069Dns2, "secondaryDNS", true},
                        {setTR069Dns3, getTR069Dns3, "thirdlyDNS", true}};
  for (const auto &setting : settings) {
    SCOPED_TRACE(setting.key);
    const std::string key = setting.key;
    platform.done.clear();
    EXPECT_EQ(setting.set("10.1.2.3"), 0);
    EXPECT_EQ(platform.done, (Strings{"nvram 0 " + key + "=10.1.2.3", "request 0x10000006"}));
    EXPECT_EQ(get(setting.get), "10.1.2.3");
    for (const char *empty : {"", static_cast<const char *>(nullptr)}) {
      platform.done.clear();
      EXPECT_EQ(setting.set(empty), setting.may_be_empty ? 0 : -1);
      EXPECT_EQ(platform.done,
                setting.may_be_empty ? (Strings{"nvram 0 " + key + "=", "request 0x10000006"}) : Strings{});
    }
  }
  EXPECT_TRUE(platform.rules_asked.empty()); // the checkers have asked
}

TEST_F(Lan, CheckersAcceptWhatTheirRuleAccepts) {
  struct {
    kova_checker *check;
    const char *accepted, *rule, *refused; // refused whatever the rule says; nullptr: the rule alone decides
  } const checkers[] = {{chkTR069LANIPAddress, "10.0.0.1", "3/9 10.0.0.1", nullptr},
                        {chkTR069LANSubnetMask, "255.255.255.0", "3/10 255.255.255.0", "255.255.0.0"},
                        {chkTR069DHCPServerEnable, "1", "3/8 1", "2"},
                        {chkTR069DHCPPoolStartIP, "10.0.0.2", "3/11 10.0.0.2", nullptr},
                        {chkTR069DHCPPoolEndIP, "10.0.0.9", "3/12 10.0.0.9", nullptr},
                        {chkTR069DnsOption, "0", "3/27 0", "01"},
                        {chkTR069Dns1, "8.8.8.8", "3/28 8.8.8.8", nullptr},
                        {chkTR069Dns2, "8.8.4.4", "3/28 8.8.4.4", nullptr},
                        {chkTR069Dns3, "1.1.1.1", "3/28 1.1.1.1", nullptr}};
  for (const auto &[check, accepted, rule, refused] : checkers) {
    SCOPED_TRACE(rule);
    platform.rule = [](int, const std::string &, int) { return -2; };
    EXPECT_EQ(check("Name", accepted), -1);
    platform.rule = nullptr;
    for (const char *no_name : {"", static_cast<const char *>(nullptr)})
      EXPECT_EQ(check(no_name, accepted), -1);
    if (refused != nullptr) {
      EXPECT_EQ(check("Name", refused), -1);
    }
    platform.rules_asked.clear();
    EXPECT_EQ(check("Name", accepted), 0);
    EXPECT_EQ(platform.rules_asked, Strings{rule});
  }
  EXPECT_EQ(chkTR069Dns1("Name", ""), -1);
  EXPECT_EQ(chkTR069Dns2("Name", ""), 0); // clears the server
  EXPECT_EQ(chkTR069Dns3("Name", ""), 0);
  EXPECT_TRUE(platform.done.empty());
}

TEST_F(Lan, DnsOptionIsStoredInverted) {
  EXPECT_EQ(get(getTR069DnsOption), "0"); // nothing stored
  EXPECT_EQ(setTR069DnsOption("1"), 0);
  EXPECT_EQ(platform.stored(0, "dnsOption"), "0");
  EXPECT_EQ(get(getTR069DnsOption), "1");
  EXPECT_EQ(setTR069DnsOption("0"), 0);
  EXPECT_EQ(platform.stored(0, "dnsOption"), "1");
  EXPECT_EQ(setTR069DnsOption(""), -1);
}

TEST_F(Lan, LeaseTimeIsJudgedByBothSetters) {
  platform.rule = [](int group, const std::string &value, int item) {
    return group == 3 && item == 21 && value == "300" ? 0 : -1;
  };
  EXPECT_EQ(setTR069DHCPLeaseTime("299"), -1);
  EXPECT_EQ(kovasetDHCPLeaseTime("299"), -1);
  EXPECT_EQ(setTR069DHCPLeaseTime(nullptr), -1);
  EXPECT_TRUE(platform.done.empty());
  EXPECT_EQ(setTR069DHCPLeaseTime("300"), 0);
  EXPECT_EQ(kovasetDHCPLeaseTime("300"), 0);
  EXPECT_EQ(platform.done,
            (Strings{"nvram 0 dhcpLeaseTime=300", "request 0x10000006", "nvram 0 dhcpLeaseTime=300"}));
  EXPECT_EQ(get(getTR069DHCPLeaseTime), "300");
  EXPECT_EQ(get(kovaDHCPLeaseTimeValue), "300");
}

TEST_F(Lan, DhcpModeRefusesRelay) {
  EXPECT_EQ(kovasetDHCPServerEnableValue("2"), -1);
  EXPECT_EQ(kovasetDHCPServerEnableValue("02 relays"), -1);
  EXPECT_EQ(get(kovaGetDHCPRelayValue), "0");
  EXPECT_EQ(kovasetDHCPServerEnableValue("0"), 0);
  EXPECT_EQ(platform.done, Strings{"nvram 0 dhcpEnabled=0"});
  platform.nvram[{0, "dhcpEnabled"}] = "2";
  EXPECT_EQ(get(kovaGetDHCPRelayValue), "1");
}

TEST_F(Lan, PoolBoundsStayInTheNetworkInOrderAndClearOfTheRouter) {
  struct {
    kova_setter *set;
    const char *value;
    int result;
  } const cases[] = {{kovasetManagementMinAddressValue, "192.168.1.50", 0},
                     {kovasetManagementMinAddressValue, "192.168.2.50", -1},
                     {kovasetManagementMinAddressValue, "192.168.1.201", -1},
                     {kovasetManagementMinAddressValue, "192.168.1.1", -1},
                     {kovasetManagementMinAddressValue, "192.168.1.200", 0},
                     {kovasetManagementMinAddressValue, nullptr, -1},
                     {kovasetManagementMaxAddressValue, "192.168.1.150", 0},
                     {kovasetManagementMaxAddressValue, "192.168.1.99", -1},
                     {kovasetManagementMaxAddressValue, "10.0.0.1", -1},
                     {kovasetManagementMaxAddressValue, "192.168.1.100", 0},
                     {kovasetManagementMaxAddressValue, "192.168.1.1", -1}};
  const fake::Store before = platform.nvram;
  for (const auto &[set, value, result] : cases) {
    const bool is_start = set == kovasetManagementMinAddressValue;
    SCOPED_TRACE(std::string(is_start ? "start " : "end ") + (value != nullptr ? value : "NULL"));
    platform.nvram = before;
    platform.done.clear();
    platform.rules_asked.clear();
    EXPECT_EQ(set(value), result);
    EXPECT_EQ(platform.rules_asked,
              Strings{(is_start ? "3/11 " : "3/12 ") + std::string(value != nullptr ? value : "")});
    EXPECT_EQ(platform.done,
              result == 0 ? Strings{std::string("nvram 0 ") + (is_start ? "dhcpStart=" : "dhcpEnd=") + value}
                          : Strings{});
  }
  platform.nvram[{0, "lan_ip"}] = "192.168.1.200"; // the end meets the router's address
  EXPECT_EQ(kovasetManagementMaxAddressValue("192.168.1.200"), -1);
}

TEST_F(Lan, ManagementSettersNeedTheDhcpServer) {
  platform.nvram[{0, "dhcpEnabled"}] = "0";
  for (kova_setter *set :
       {kovasetManagementMinAddressValue, kovasetManagementMaxAddressValue, kovasetIPInterfaceIPAddressValue})
    EXPECT_EQ(set("192.168.1.150"), -1);
  EXPECT_EQ(kovasetManagementSubnetMaskValue("255.255.255.0"), -1);
  EXPECT_EQ(kovasetDHCPLeaseTime("3600"), -1);
  EXPECT_TRUE(platform.done.empty());
}

TEST_F(Lan, SubnetMaskMustKeepThePoolInTheNetwork) {
  EXPECT_EQ(kovasetManagementSubnetMaskValue("255.255.255.192"), -1);
  EXPECT_TRUE(platform.rules_asked.empty());
  EXPECT_EQ(kovasetManagementSubnetMaskValue("255.255.0.0"), 0);
  EXPECT_EQ(platform.rules_asked, (Strings{"3/9 192.168.1.1", "3/10 255.255.0.0"}));
  EXPECT_EQ(platform.done, Strings{"nvram 0 lan_netmask=255.255.0.0"});
}

TEST_F(Lan, MovingTheLanMovesThePoolAndDropsTheRules) {
  EXPECT_EQ(kovasetIPInterfaceIPAddressValue("10.0.0.1"), 0);
  Strings expected = rules_dropped;
  expected.insert(expected.end(),
                  {"nvram 0 lan_ip=10.0.0.1", "nvram 0 dhcpStart=10.0.0.100", "nvram 0 dhcpEnd=10.0.0.200"});
  EXPECT_EQ(platform.done, expected);
}

TEST_F(Lan, AnAddressOnAPoolBoundIsRefusedAfterTheRulesAreGone) {
  EXPECT_EQ(kovasetIPInterfaceIPAddressValue("192.168.1.100"), -1);
  EXPECT_TRUE(platform.done.empty());
  EXPECT_EQ(kovasetIPInterfaceIPAddressValue("10.0.0.200"), -1);
  EXPECT_EQ(platform.done, rules_dropped);
}

TEST_F(Lan, AMalformedStoredBoundStaysAsItIs) {
  platform.nvram[{0, "dhcpStart"}] = "192.168.1";
  platform.nvram[{0, "dhcpEnd"}] = "192.168.1.2.3";
  EXPECT_EQ(kovasetIPInterfaceIPAddressValue("192.168.1.2"), 0);
  EXPECT_EQ(platform.done, Strings{"nvram 0 lan_ip=192.168.1.2"});
}

TEST_F(Lan, ApplyAnnouncesTheLanAndRestartsTheVpnModeAroundIt) {
  EXPECT_EQ(kovasetDHCPApply("11"), -1);
  EXPECT_EQ(kovasetDHCPApply(nullptr), -1);
  EXPECT_TRUE(platform.done.empty());
  EXPECT_EQ(kovasetDHCPApply("1"), 0);
  EXPECT_EQ(platform.done, Strings{"run test_cpeevent call 'lan settings changed'"});
  platform.done.clear();
  platform.nvram[{0, "oper_mode"}] = "2";
  EXPECT_EQ(kovasetDHCPApply("1"), 0);
  EXPECT_EQ(platform.done, (Strings{"run test_cpeevent call 'ce_oper_mode stop'", "sleep 3",
                                    "run test_cpeevent call 'lan settings changed'", "sleep 3",
                                    "run test_cpeevent call 'ce_oper_mode start'"}));
  EXPECT_EQ(get(kovaGetDHCPApply, 4), "####");
}

TEST_F(Lan, TheEthernetPortFollowsItsLink) {
  EXPECT_EQ(get(getTR069LanEnable), "0");
  EXPECT_EQ(get(getTR069LanStatus), "Link Down");
  EXPECT_EQ(get(getTR069LanSpeed), "N/A");
  platform.interfaces = {{"eth0", "192.168.1.1", "255.255.255.0", 100000}}; // more than 16 bits of speed
  EXPECT_EQ(get(getTR069LanEnable), "1");
  EXPECT_EQ(get(getTR069LanStatus), "Link Up");
  EXPECT_EQ(get(getTR069LanSpeed), "100000");
  platform.interfaces[0].speed = 0; // a link without a speed
  EXPECT_EQ(get(getTR069LanStatus), "Link Down");

  EXPECT_EQ(setTR069LanEnable(""), -1);
  EXPECT_EQ(setTR069LanEnable(nullptr), -1);
  EXPECT_EQ(setTR069LanEnable("1\""), -1);
  EXPECT_TRUE(platform.done.empty());
  EXPECT_EQ(setTR069LanEnable("0"), 0);
  EXPECT_EQ(setTR069LanEnable("00"), 0);
  EXPECT_EQ(platform.done,
            (Strings{"run ucfg set config lan eth ENABLE 0; brctl delif br0 eth0; ifconfig eth0 down",
                     "run ucfg set config lan eth ENABLE 1; brctl addif br0 eth0; ifconfig eth0 up",
                     "run sleep 2; kern eth phyr"}));
}

TEST_F(Lan, PortCountersAndAddresses) {
  platform.counters = {{"lan 2", "2048"}, {"lan 10", "10485760"}, {"lan 3", "17"}};
  EXPECT_EQ(get(kovaGetLANEthernetInterfaceConfigStatsBytesSentValue), "2 KB");
  EXPECT_EQ(get(kovaLANEthernetInterfaceConfigStatsBytesReceivedValue), "10.00 MB");
  EXPECT_EQ(get(kovaLANEthernetInterfaceConfigStatsPacketsSentValue), "17");
  EXPECT_EQ(get(kovaLANEthernetInterfaceConfigStatsPacketsReceivedValue), "0"); // no such counter
  EXPECT_EQ(get(kovaGetTR069LANMacAddress), "");
  platform.mac = "00:1A:2B:3C:4D:5E";
  EXPECT_EQ(get(kovaGetTR069LANMacAddress), platform.mac);
  EXPECT_EQ(get(kovaGetTR069LANEthernetInterfaceConfigMACAddressValue), platform.mac);
}

TEST_F(Lan, DhcpClientsEndAtTheFirstMalformedLine) {
  EXPECT_EQ(get(kovaGetTR069DhcpClientStatus), "");
  std::string &leases = platform.files["/var/config/tarn_dhcpd.leases"];
  const std::pair<std::string, std::string> cases[] = {
      {"", ""},
      {"1,mac,ip,host\n2,mac,ip,other", "1,mac,ip,host;2,mac,ip,other"},
      {"1,mac,ip,host\n\n2,mac,ip,other\n", "1,mac,ip,host"},
      {"1,mac,ip\n2,mac,ip,other\n", ""},
      {"1,mac,ip,host\n" + std::string(300, 'x') + ",b,c,d\n", "1,mac,ip,host"}};
  for (const auto &[text, expected] : cases) {
    leases = text;
    EXPECT_EQ(get(kovaGetTR069DhcpClientStatus), expected) << text;
  }
  leases.clear();
  for (int i = 0; i < 200; ++i)
    leases += "1234567890,00:11:22:33:44:55,192.168.1.100,host-name\n";
  const std::string list = get(kovaGetTR069DhcpClientStatus, 4096);
  const std::size_t entry = leases.find('\n') + 1;
  EXPECT_EQ((list.size() + 1) % entry, 0U) << "whole entries only";
  EXPECT_GT(list.size() + 1 + 256, 4096 - entry);
}

} // namespace
