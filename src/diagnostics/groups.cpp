// The diagnostics tests: when a request may touch them, and how their tools are started and stopped.
#include "src/diagnostics/groups.hpp"

#include "src/diagnostics/diagnostics_rows.hpp"
#include "src/diagnostics/keys.hpp"
#include "src/frame/growing_text.hpp"

#include <cstdlib>

namespace kova::diagnostics {

namespace {

using transaction::FaultNames;
using transaction::Group;
using transaction::GroupedValue;
using transaction::List;
using transaction::set_by_request;

const char *value(const PendingValue &slot) {
  return pvcl_slot_value(&slot);
}

// A tool's command line: at most 255 characters, cut at the end.
struct CommandLine {
  char room[256];
  GrowingText text{room};

  void add_option(const char *option, const PendingValue &slot) {
    if (*value(slot) != '\0') text.add_what_fits(" %s %s", option, value(slot));
  }
};

// Each management instance has a tool of its own.
struct Tool {
  const char *primary, *secondary;
  const char *name() const { return gSecondaryInstance != 0 ? secondary : primary; }
};

// The switch that tells a secondary tool whose keys to use.
const char *instance_switch() {
  return gSecondaryInstance != 0 ? " -S" : "";
}

// Any accepted change that does not ask for a run stops a test in progress.
bool asks_for_run(const PendingValue &trigger, const Condition &run) {
  return set_by_request(trigger) && run.holds(value(trigger));
}

void add_network_options(CommandLine &line, const PendingValue &interface, const PendingValue &dscp) {
  line.add_option("-i", interface);
  line.add_option("-d", dscp);
}

unsigned long number(const PendingValue &slot) {
  return std::strtoul(value(slot), nullptr, 10);
}

bool judge_test_state(const Group &group, FaultNames &faults) {
  const PendingValue &state = group.values.front().slot();
  if (!set_by_request(state) || requested.holds(value(state))) return true;
  group.each_slot([&faults](const PendingValue &slot) {
    if (set_by_request(slot)) faults.add(slot.name);
  });
  return false;
}

bool judge_trace_route(const Group &group, FaultNames &faults) {
  if (!judge_test_state(group, faults)) return false;
  if (!asks_for_run(gPVCL.trState, requested)) return true;

  const auto normalise = [](PendingValue &slot, const char *if_empty, auto out_of_range, const char *limit) {
    if (*value(slot) == '\0')
      pvcl_set_slot_value(&slot, if_empty);
    else if (out_of_range(number(slot)))
      pvcl_set_slot_value(&slot, limit);
  };
  normalise(
      gPVCL.trTryCount, "3", [](unsigned long n) { return n > 10; }, "10");
  normalise(
      gPVCL.trTimeout, "5000", [](unsigned long n) { return n < 1000; }, "1000");
  normalise(
      gPVCL.trDataSize, "38", [](unsigned long n) { return n > 65000; }, "65000");
  normalise(
      gPVCL.trMaxHopCount, "30", [](unsigned long n) { return n > 255; }, "255");
  return true;
}

void launch_download() {
  constexpr Tool tool = {"download_diag", "sec_download_diag"};
  if (!asks_for_run(gPVCL.dlState, requested)) return mrhd_abort_dlDiag(tool.name());
  CommandLine line;
  line.text.add_what_fits("/bin/%s%s -u %s", tool.name(), instance_switch(), value(gPVCL.dlUrl));
  add_network_options(line, gPVCL.dlInterface, gPVCL.dlDscp);
  mrhd_launch_dlDiag(line.text);
}

void launch_upload() {
  constexpr Tool tool = {"upload_diag", "sec_upload_diag"};
  if (!asks_for_run(gPVCL.ulState, requested)) return mrhd_abort_ulDiag(tool.name());
  CommandLine line;
  line.text.add_what_fits("/bin/%s%s -u %s -l %s", tool.name(), instance_switch(), value(gPVCL.ulUrl),
                          value(gPVCL.ulTestFileLength));
  add_network_options(line, gPVCL.ulInterface, gPVCL.ulDscp);
  mrhd_launch_ulDiag(line.text);
}

void launch_udp_echo() {
  constexpr Tool tool = {"udpechoplus_server", "sec_udpechoplus_server"};
  if (!asks_for_run(gPVCL.udpEchoEnable, go_ahead)) return mrhd_shutdown_udpEchoServer(tool.name());
  CommandLine line;
  line.text.add_what_fits("/bin/%s%s -p %s", tool.name(), instance_switch(), value(gPVCL.udpEchoPort));
  line.add_option("-i", gPVCL.udpEchoInterface);
  line.add_option("-s", gPVCL.udpEchoSourceIp);
  if (equal(value(gPVCL.udpEchoPlusEnabled), "1")) line.text.add_what_fits(" -P");
  mrhd_launch_udpEchoServer(line.text);
}

void launch_ping() {
  constexpr Tool tool = {"ping_diag", "sec_ping_diag"};
  if (!asks_for_run(gPVCL.pingState, requested)) return mrhd_abort_pingDiag(tool.name());
  CommandLine line;
  line.text.add_what_fits("/bin/%s%s -H %s -c %s -W %s -s %s", tool.name(), instance_switch(),
                          value(gPVCL.pingHost), value(gPVCL.pingCount), value(gPVCL.pingTimeout),
                          value(gPVCL.pingDataSize));
  mrhd_launch_pingDiag(line.text);
}

void launch_trace_route() {
  constexpr Tool tool = {"traceroute_diag", "sec_traceroute_diag"};
  if (!asks_for_run(gPVCL.trState, requested)) return mrhd_abort_tracerouteDiag(tool.name());
  CommandLine line;
  line.text.add_what_fits("/bin/%s %s %s -q %s -m %s -w %lu,3,10 --savetof%s", tool.name(),
                          value(gPVCL.trHost), value(gPVCL.trDataSize), value(gPVCL.trTryCount),
                          value(gPVCL.trMaxHopCount), number(gPVCL.trTimeout) / 1000, instance_switch());
  mrhd_launch_tracerouteDiag(line.text);
}

// clang-format off
//   slot                       label                                  key                         instead of an empty value
constexpr GroupedValue download_values[] = {
    {&List::dlState,            "Local dlDaig state",                  key::dl_state},
    {&List::dlInterface,        "Local dlDaig interface",              key::dl_interface},
    {&List::dlUrl,              "Local dlDaig URL",                    key::dl_url},
    {&List::dlDscp,             "Local dlDaig DSCP",                   key::dl_dscp}};
constexpr GroupedValue upload_values[] = {
    {&List::ulState,            "Local ulDaig state",                  key::ul_state},
    {&List::ulInterface,        "Local ulDaig interface",              key::ul_interface},
    {&List::ulUrl,              "Local ulDaig URL",                    key::ul_url},
    {&List::ulTestFileLength,   "Local ulDaig testfilelength",         key::ul_test_file_length,   "1024"},
    {&List::ulDscp,             "Local ulDaig DSCP",                   key::ul_dscp}};
constexpr GroupedValue udp_echo_values[] = {
    {&List::udpEchoEnable,      "Local UDPEchoConfig Enable",          key::udp_echo_enable,       "0"},
    {&List::udpEchoInterface,   "Local UDPEchoConfig Interface",       key::udp_echo_interface},
    {&List::udpEchoSourceIp,    "Local UDPEchoConfig SourceIPAddress", key::udp_echo_source_ip},
    {&List::udpEchoPort,        "Local UDPEchoConfig UDPPort",         key::udp_echo_port},
    {&List::udpEchoPlusEnabled, "Local UDPEchoConfig ECHOPlusEnabled", key::udp_echo_plus_enabled, "0"}};
constexpr GroupedValue ping_values[] = {
    {&List::pingState,          "Local pingDaig state",                key::ping_state},
    {&List::pingHost,           "Local pingDaig Host",                 key::ping_host},
    {&List::pingCount,          "Local pingDaig CNT",                  key::ping_count,            "4"},
    {&List::pingTimeout,        "Local pingDaig timeout",              key::ping_timeout,          "1"},
    {&List::pingDataSize,       "Local pingDaig data size",            key::ping_data_size,        "56"}};
constexpr GroupedValue trace_route_values[] = {
    {&List::trState,            "Local trDaig state",                  key::tr_state},
    {&List::trHost,             "Local trDaig Host",                   key::tr_host},
    {&List::trTryCount,         "Local trDaig TRYCNT",                 key::tr_try_count,          "3"},
    {&List::trTimeout,          "Local trDaig timeout",                key::tr_timeout,            "1000"},
    {&List::trDataSize,         "Local trDaig data size",              key::tr_data_size,          "38"},
    {&List::trMaxHopCount,      "Local trDaig max hops",               key::tr_max_hop_count,      "30"}};
// clang-format on

} // namespace

constinit const Group download = {&List::downloadDiagTouched, Section::runtime, download_values,
                                  judge_test_state, launch_download};
constinit const Group upload = {&List::uploadDiagTouched, Section::runtime, upload_values, judge_test_state,
                                launch_upload};
constinit const Group udp_echo = {&List::udpEchoTouched, Section::runtime, udp_echo_values, nullptr,
                                  launch_udp_echo};
constinit const Group ping = {&List::ipPingTouched, Section::runtime, ping_values, judge_test_state,
                              launch_ping};
constinit const Group trace_route = {&List::traceRouteTouched, Section::runtime, trace_route_values,
                                     judge_trace_route, launch_trace_route};

} // namespace kova::diagnostics
