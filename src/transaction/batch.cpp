// The batch validation: the nine groups in their order, and what is done with each.
#include "src/transaction/groups.hpp"

#include <cstring>
#include <iterator>

namespace kova::transaction {

namespace {

// clang-format off
constexpr StoredValue wifi_values[] = {
    {"Local WiFi Mode",                   "0_rfmode"},
    {"Local WiFi rate",                   "Fixrate"},
    {"Local WiFi Bandwidth",              "Bandwidth"}};
constexpr StoredValue lan_values[] = {
    {"Local Lan ip",                      "lan_ip"},
    {"Local Lan subnetmask",              "lan_netmask"},
    {"Local DHCP enable",                 "dhcpEnabled"},
    {"Local DHCP poolstartip",            "dhcpStart"},
    {"Local DHCP poolendip",              "dhcpEnd"}};
constexpr StoredValue dns_values[] = {
    {"Local DNS dnsOption",               "dnsOption"},
    {"Local DNS primaryDNS",              "primaryDNS"},
    {"Local DNS secondaryDNS",            "secondaryDNS"},
    {"Local DNS thirdlyDNS",              "thirdlyDNS"}};
constexpr StoredValue download_values[] = {
    {"Local dlDaig state",                OWN("TR_DLDIAG_STATE")},
    {"Local dlDaig interface",            OWN("TR_DLDIAG_IF")},
    {"Local dlDaig URL",                  OWN("TR_DLDIAG_URL")},
    {"Local dlDaig DSCP",                 OWN("TR_DLDIAG_DSCP")}};
constexpr StoredValue upload_values[] = {
    {"Local ulDaig state",                OWN("TR_ULDIAG_STATE")},
    {"Local ulDaig interface",            OWN("TR_ULDIAG_IF")},
    {"Local ulDaig URL",                  OWN("TR_ULDIAG_URL")},
    {"Local ulDaig testfilelength",       OWN("TR_ULDIAG_FILE_LEN"), "1024"},
    {"Local ulDaig DSCP",                 OWN("TR_ULDIAG_DSCP")}};
constexpr StoredValue udp_echo_values[] = {
    {"Local UDPEchoConfig Enable",        OWN("TR_UDPECHO_ENABLE"), "0"},
    {"Local UDPEchoConfig Interface",     OWN("TR_UDPECHO_IF")},
    {"Local UDPEchoConfig SourceIPAddress", OWN("TR_UDPECHO_SIPADDR")},
    {"Local UDPEchoConfig UDPPort",       OWN("TR_UDPECHO_PORT")},
    {"Local UDPEchoConfig ECHOPlusEnabled", OWN("TR_UDPECHO_PLUS_ENABLE"), "0"}};
constexpr StoredValue ping_values[] = {
    {"Local pingDaig state",              OWN("TR_PINGDIAG_STATE")},
    {"Local pingDaig Host",               OWN("TR_PINGDIAG_HOST")},
    {"Local pingDaig CNT",                OWN("TR_PINGDIAG_CNT"), "4"},
    {"Local pingDaig timeout",            OWN("TR_PINGDIAG_TIMEOUT"), "1"},
    {"Local pingDaig data size",          OWN("TR_PINGDIAG_DATA_SIZE"), "56"}};
constexpr StoredValue trace_route_values[] = {
    {"Local trDaig state",                OWN("TR_TRACEROUTEDIAG_STATE")},
    {"Local trDaig Host",                 OWN("TR_TRACEROUTEDIAG_HOST")},
    {"Local trDaig TRYCNT",               OWN("TR_TRACEROUTEDIAG_TRYCNT"), "3"},
    {"Local trDaig timeout",              OWN("TR_TRACEROUTEDIAG_TIMEOUT"), "1000"},
    {"Local trDaig data size",            OWN("TR_TRACEROUTEDIAG_DATA_SIZE"), "38"},
    {"Local trDaig max hops",             OWN("TR_TRACEROUTEDIAG_MAX_HOPS"), "30"}};

// In the order in which they are judged, launched and released.
constexpr Group groups[] = {
    {KOVA_GROUP_PLACES(wifiTouched, wifiMode, wifiBandwidth),              Section::config,  wifi_values,        judge_wifi,        nullptr},
    {KOVA_GROUP_PLACES(lanTouched, lanIpAddress, dhcpPoolEnd),             Section::config,  lan_values,         judge_lan,         nullptr},
    {KOVA_GROUP_PLACES(dnsTouched, dnsOption, dns3),                       Section::config,  dns_values,         judge_dns,         nullptr},
    {KOVA_GROUP_PLACES(downloadDiagTouched, dlState, dlDscp),              Section::runtime, download_values,    judge_test_state,  launch_download},
    {KOVA_GROUP_PLACES(uploadDiagTouched, ulState, ulDscp),                Section::runtime, upload_values,      judge_test_state,  launch_upload},
    {KOVA_GROUP_PLACES(udpEchoTouched, udpEchoEnable, udpEchoPlusEnabled), Section::runtime, udp_echo_values,    nullptr,           launch_udp_echo},
    {KOVA_GROUP_PLACES(ipPingTouched, pingState, pingDataSize),            Section::runtime, ping_values,        judge_test_state,  launch_ping},
    {KOVA_GROUP_PLACES(traceRouteTouched, trState, trMaxHopCount),         Section::runtime, trace_route_values, judge_trace_route, launch_trace_route},
    {KOVA_GROUP_PLACES(wanApnTouched, operMode, apn[7].apnBridgeVid),      Section::config,  nullptr,            judge_wan_apn,     nullptr}};
// clang-format on

constexpr std::size_t all_slots() {
  std::size_t count = 0;
  for (const Group &group : groups)
    count += group.slot_count;
  return count;
}
static_assert(all_slots() == 65);

unsigned char &touched(const Group &group) {
  return *(reinterpret_cast<unsigned char *>(&gPVCL) + group.touched);
}

void complete(const Group &group) {
  if (group.stored == nullptr) return;
  for (std::size_t i = 0; i < group.slot_count; ++i) {
    PendingValue &slot = group.slot(i);
    if (slot.name != nullptr) continue;
    const StoredValue &stored = group.stored[i];
    const Text value = load({group.section, stored.key.current()});
    pvcl_set_slot(&slot, stored.label, value.empty() ? stored.if_empty : value);
  }
}

void release(const Group &group) {
  touched(group) = 0;
  for (std::size_t i = 0; i < group.slot_count; ++i)
    pvcl_free_slot(&group.slot(i));
}

// The first group that fails ends it: no later one is looked at. What passed groups did stays done.
bool judge_all(FaultNames &faults) {
  for (const Group &group : groups) {
    if (touched(group) == 0) continue;
    complete(group);
    if (group.judge != nullptr && !group.judge(group, faults)) return false;
  }
  return true;
}

} // namespace

PendingValue &Group::slot(std::size_t index) const {
  return reinterpret_cast<PendingValue *>(reinterpret_cast<unsigned char *>(&gPVCL) + first_slot)[index];
}

bool set_by_request(const PendingValue &slot) {
  return slot.name != nullptr && !begins_with(slot.name, "Local");
}

void FaultNames::add(const char *name) {
  if (buffer_ == nullptr) return;
  if (*buffer_ != '\0') std::strcat(buffer_, ";");
  std::strcat(buffer_, name);
}

void FaultNames::add_within_size(const char *name) {
  if (buffer_ == nullptr || size_ <= 0) return;
  const auto append = [this](const char *text) {
    const std::size_t used = std::strlen(buffer_), most = static_cast<std::size_t>(size_) - 1;
    if (used < most) std::strncat(buffer_, text, most - used);
  };
  if (*buffer_ != '\0') append(";");
  append(name);
}

} // namespace kova::transaction

int kovaCheckTR069ParameterValues(char *faultNames, int faultNamesSize) {
  using namespace kova::transaction;
  FaultNames faults(faultNames, faultNamesSize);
  const bool passed = judge_all(faults);
  for (const Group &group : groups) {
    if (passed && touched(group) != 0 && group.launch != nullptr) group.launch();
    release(group);
  }
  return passed ? 0 : -1;
}
