// LAN, DHCP and the Ethernet port.
#include "fake/fake.hpp"

#include <kova/lan.h>

using fake::effect;
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

const char *const none = nullptr;
const std::string restart = "request 0x10000006";

TEST_F(Lan, CheckersJudgeAndSettersStoreAndRestartTheDhcpServer) {
  EXPECT_EQ(chkTR069LANIPAddress("Name", "10.0.0.1"), 0);
  EXPECT_EQ(chkTR069Dns2("Name", ""), 0); // clears a server: the rule is not asked
  for (const char *name : {"", none})
    EXPECT_EQ(chkTR069LANIPAddress(name, "10.0.0.1"), -1);
  for (const char *value : {"", none})
    EXPECT_EQ(effect(setTR069LANIPAddress, value, -1), Strings{});
  EXPECT_EQ(chkTR069Dns2("Name", none) + chkTR069Dns1("Name", "") +
                chkTR069LANSubnetMask("Name", "255.255.0.0") + chkTR069DHCPServerEnable("Name", "2") +
                chkTR069DnsOption("Name", "01"),
            -5);
  EXPECT_EQ(platform.rules_asked, Strings{"3/9 10.0.0.1"});
  fake::refuse_all();
  EXPECT_EQ(chkTR069Dns2("Name", "8.8.8.8") + chkTR069DnsOption("Name", "1"), -2);
  EXPECT_EQ(effect(setTR069LANIPAddress, "10.1.2.3"), (Strings{"nvram 0 lan_ip=10.1.2.3", restart}));
  EXPECT_EQ(effect(setTR069Dns2, none), (Strings{"nvram 0 secondaryDNS=", restart}));
}

TEST_F(Lan, DnsOptionIsStoredInverted) {
  EXPECT_EQ(get(getTR069DnsOption), "0"); // nothing stored
  for (const auto &[value, stored] : {std::pair{"1", "0"}, {"0", "1"}}) {
    EXPECT_EQ(effect(setTR069DnsOption, value)[0], std::string("nvram 0 dnsOption=") + stored);
    EXPECT_EQ(get(getTR069DnsOption), value);
  }
  EXPECT_EQ(setTR069DnsOption(""), -1);
}

TEST_F(Lan, LeaseTimeIsJudgedByItsSetter) {
  EXPECT_EQ(effect(setTR069DHCPLeaseTime, "300"), (Strings{"nvram 0 dhcpLeaseTime=300", restart}));
  fake::refuse_all();
  EXPECT_EQ(effect(setTR069DHCPLeaseTime, nullptr, -1), Strings{});
}

TEST_F(Lan, DhcpModeRefusesRelay) {
  EXPECT_EQ(kovasetDHCPServerEnableValue("02 relays"), -1);
  EXPECT_EQ(get(kovaGetDHCPRelayValue), "0");
  EXPECT_EQ(effect(kovasetDHCPServerEnableValue, "0"), Strings{"nvram 0 dhcpEnabled=0"});
  platform.nvram[{0, "dhcpEnabled"}] = "2";
  EXPECT_EQ(get(kovaGetDHCPRelayValue), "1");
}

TEST_F(Lan, PoolBoundsStayInTheNetworkInOrderAndClearOfTheRouter) {
  struct {
    kova_setter *set;
    const char *value, *kept; // an empty one: refused
  } const cases[] = {{kovasetManagementMinAddressValue, "192.168.1.50", "nvram 0 dhcpStart=192.168.1.50"},
                     {kovasetManagementMinAddressValue, "192.168.2.50", ""},
                     {kovasetManagementMinAddressValue, "192.168.1.201", ""},
                     {kovasetManagementMinAddressValue, "192.168.1.1", ""},
                     {kovasetManagementMaxAddressValue, "192.168.1.200", "nvram 0 dhcpEnd=192.168.1.200"},
                     {kovasetManagementMaxAddressValue, "192.168.1.49", ""},
                     {kovasetManagementMaxAddressValue, "192.168.2.200", ""}};
  for (const auto &[set, value, kept] : cases)
    EXPECT_EQ(effect(set, value, *kept == '\0' ? -1 : 0), *kept == '\0' ? Strings{} : Strings{kept});
  EXPECT_EQ(platform.rules_asked.front(), "3/11 192.168.1.50");
  EXPECT_EQ(platform.rules_asked.back(), "3/12 192.168.2.200");
  platform.nvram[{0, "lan_ip"}] = "192.168.1.200"; // the end meets the router's address
  EXPECT_EQ(kovasetManagementMaxAddressValue("192.168.1.200"), -1);
  fake::refuse_all();
  EXPECT_EQ(kovasetManagementMinAddressValue("192.168.1.50"), -1);
}

TEST_F(Lan, ManagementSettersNeedTheDhcpServer) {
  platform.nvram[{0, "dhcpEnabled"}] = "0";
  for (kova_setter *set :
       {kovasetManagementMinAddressValue, kovasetManagementMaxAddressValue, kovasetIPInterfaceIPAddressValue,
        kovasetManagementSubnetMaskValue, kovasetDHCPLeaseTime})
    EXPECT_EQ(effect(set, set == kovasetManagementSubnetMaskValue ? "255.255.255.0" : "192.168.1.150", -1),
              Strings{});
}

TEST_F(Lan, SubnetMaskMustKeepThePoolInTheNetwork) {
  EXPECT_EQ(effect(kovasetManagementSubnetMaskValue, "255.255.255.192", -1), Strings{});
  EXPECT_TRUE(platform.rules_asked.empty());
  EXPECT_EQ(effect(kovasetManagementSubnetMaskValue, "255.255.0.0"),
            Strings{"nvram 0 lan_netmask=255.255.0.0"});
  EXPECT_EQ(platform.rules_asked, (Strings{"3/9 192.168.1.1", "3/10 255.255.0.0"}));
}

TEST_F(Lan, MovingTheLanDropsTheRulesAndMovesThePool) {
  Strings moved = rules_dropped;
  moved.insert(moved.end(),
               {"nvram 0 lan_ip=10.0.0.1", "nvram 0 dhcpStart=10.0.0.100", "nvram 0 dhcpEnd=10.0.0.200"});
  const fake::Store before = platform.nvram;
  EXPECT_EQ(effect(kovasetIPInterfaceIPAddressValue, "10.0.0.1"), moved);
  platform.nvram = before;
  EXPECT_EQ(effect(kovasetIPInterfaceIPAddressValue, "192.168.1.100", -1), Strings{});  // a bound of the pool
  EXPECT_EQ(effect(kovasetIPInterfaceIPAddressValue, "10.0.0.200", -1), rules_dropped); // gone all the same
  platform.preset(0, "lan_ip=192.168.1.1 dhcpStart=192.168.1 dhcpEnd=192.168.1.2.3");
  EXPECT_EQ(effect(kovasetIPInterfaceIPAddressValue, "192.168.1.2"), Strings{"nvram 0 lan_ip=192.168.1.2"});
}

TEST_F(Lan, ApplyAnnouncesTheLanAndRestartsTheVpnModeAroundIt) {
  EXPECT_EQ(effect(kovasetDHCPApply, "11", -1), Strings{});
  EXPECT_EQ(effect(kovasetDHCPApply, "1"), Strings{"run test_cpeevent call 'lan settings changed'"});
  platform.nvram[{0, "oper_mode"}] = "2";
  EXPECT_EQ(effect(kovasetDHCPApply, "1"),
            (Strings{"run test_cpeevent call 'ce_oper_mode stop'", "sleep 3",
                     "run test_cpeevent call 'lan settings changed'", "sleep 3",
                     "run test_cpeevent call 'ce_oper_mode start'"}));
}

TEST_F(Lan, TheEthernetPortFollowsItsLink) {
  const auto port = [] { return fake::get_all({getTR069LanEnable, getTR069LanStatus, getTR069LanSpeed}); };
  EXPECT_EQ(port(), (Strings{"0", "Link Down", "N/A"}));
  platform.interfaces = {{"eth0", "192.168.1.1", "255.255.255.0", 100000}}; // more than 16 bits of speed
  EXPECT_EQ(port(), (Strings{"1", "Link Up", "100000"}));
  platform.interfaces[0].speed = 0; // a link without a speed
  EXPECT_EQ(get(getTR069LanStatus), "Link Down");

  for (const char *refused : {"", none, "1\""})
    EXPECT_EQ(effect(setTR069LanEnable, refused, -1), Strings{});
  EXPECT_EQ(effect(setTR069LanEnable, "0"),
            Strings{"run ucfg set config lan eth ENABLE 0; brctl delif br0 eth0; ifconfig eth0 down"});
  EXPECT_EQ(effect(setTR069LanEnable, "00"),
            (Strings{"run ucfg set config lan eth ENABLE 1; brctl addif br0 eth0; ifconfig eth0 up",
                     "run sleep 2; kern eth phyr"}));
}

TEST_F(Lan, PortCountersAndAddresses) {
  platform.counters = {{"lan 2", "2048"}, {"lan 10", "10485760"}, {"lan 3", "17"}};
  platform.mac = "00:1A:2B:3C:4D:5E";
  EXPECT_EQ(fake::get_all({kovaGetLANEthernetInterfaceConfigStatsBytesSentValue,
                           kovaLANEthernetInterfaceConfigStatsBytesReceivedValue,
                           kovaLANEthernetInterfaceConfigStatsPacketsSentValue,
                           kovaLANEthernetInterfaceConfigStatsPacketsReceivedValue, kovaGetTR069LANMacAddress,
                           kovaGetTR069LANEthernetInterfaceConfigMACAddressValue}),
            (Strings{"2 KB", "10.00 MB", "17", "0", platform.mac, platform.mac}));
  platform.mac.clear();
  EXPECT_EQ(get(kovaGetTR069LANMacAddress), "");
}

TEST_F(Lan, DhcpClientsEndAtTheFirstMalformedLine) {
  EXPECT_EQ(get(kovaGetTR069DhcpClientStatus), "");
  std::string &leases = platform.files["/var/config/tarn_dhcpd.leases"];
  const std::pair<std::string, std::string> cases[] = {
      {"", ""},
      {"1,mac,ip,host\n2,mac,ip,other", "1,mac,ip,host;2,mac,ip,other"},
      {"1,mac,ip,host\n\n2,mac,ip,other\n", "1,mac,ip,host"},
      {"1,mac,ip\n2,mac,ip,other\n", ""},
      {"1,mac,ip,host\n" + std::string(300, 'x') + ",b,c,d\n", "1,mac,ip,host"},
      {std::string(248, 'x') + ",b,c,d\n", std::string(248, 'x') + ",b,c,d"}, // as long as a line may be
      {std::string(249, 'x') + ",b,c,d", ""}}; // as long, but nobody knows what is missing behind it
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
