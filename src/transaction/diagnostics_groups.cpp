// The diagnostics tests: when a request may touch them, and how their tools are started and stopped.
#include "src/transaction/groups.hpp"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace kova::transaction {

namespace {

constexpr const char *requested = "Requested";

const char *value(const PendingValue &slot) {
  return pvcl_slot_value(&slot);
}

// A tool's command line: at most 255 characters, cut at the end.
class CommandLine {
public:
  __attribute__((format(printf, 2, 3))) void add(const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int wanted = std::vsnprintf(text_.chars + length_, Text::size - length_, format, arguments);
    va_end(arguments);
    if (wanted > 0) length_ += static_cast<std::size_t>(wanted);
    if (length_ >= Text::size) length_ = Text::size - 1;
  }
  void add_unless_empty(const char *option, const PendingValue &slot) {
    if (*value(slot) != '\0') add(" %s %s", option, value(slot));
  }
  const char *text() const { return text_; }

private:
  Text text_;
  std::size_t length_ = 0;
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
bool asks_for_run(const PendingValue &trigger, const char *wanted) {
  return set_by_request(trigger) && equal(value(trigger), wanted);
}

void add_network_options(CommandLine &line, const PendingValue &interface, const PendingValue &dscp) {
  line.add_unless_empty("-i", interface);
  line.add_unless_empty("-d", dscp);
}

bool is_empty_value(const PendingValue &slot) {
  return *value(slot) == '\0';
}
unsigned long number(const PendingValue &slot) {
  return std::strtoul(value(slot), nullptr, 10);
}

} // namespace

bool judge_test_state(const Group &group, FaultNames &faults) {
  const PendingValue &state = group.slot(0);
  if (!set_by_request(state) || equal(value(state), requested)) return true;
  for (std::size_t i = 0; i < group.slot_count; ++i)
    if (set_by_request(group.slot(i))) faults.add(group.slot(i).name);
  return false;
}

bool judge_trace_route(const Group &group, FaultNames &faults) {
  if (!judge_test_state(group, faults)) return false;
  if (!asks_for_run(gPVCL.trState, requested)) return true;

  const auto normalise = [](PendingValue &slot, const char *if_empty, auto out_of_range, const char *limit) {
    if (is_empty_value(slot))
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
  line.add("/bin/%s%s -u %s", tool.name(), instance_switch(), value(gPVCL.dlUrl));
  add_network_options(line, gPVCL.dlInterface, gPVCL.dlDscp);
  mrhd_launch_dlDiag(line.text());
}

void launch_upload() {
  constexpr Tool tool = {"upload_diag", "sec_upload_diag"};
  if (!asks_for_run(gPVCL.ulState, requested)) return mrhd_abort_ulDiag(tool.name());
  CommandLine line;
  line.add("/bin/%s%s -u %s -l %s", tool.name(), instance_switch(), value(gPVCL.ulUrl),
           value(gPVCL.ulTestFileLength));
  add_network_options(line, gPVCL.ulInterface, gPVCL.ulDscp);
  mrhd_launch_ulDiag(line.text());
}

void launch_udp_echo() {
  constexpr Tool tool = {"udpechoplus_server", "sec_udpechoplus_server"};
  if (!asks_for_run(gPVCL.udpEchoEnable, "1")) return mrhd_shutdown_udpEchoServer(tool.name());
  CommandLine line;
  line.add("/bin/%s%s -p %s", tool.name(), instance_switch(), value(gPVCL.udpEchoPort));
  line.add_unless_empty("-i", gPVCL.udpEchoInterface);
  line.add_unless_empty("-s", gPVCL.udpEchoSourceIp);
  if (equal(value(gPVCL.udpEchoPlusEnabled), "1")) line.add(" -P");
  mrhd_launch_udpEchoServer(line.text());
}

void launch_ping() {
  constexpr Tool tool = {"ping_diag", "sec_ping_diag"};
  if (!asks_for_run(gPVCL.pingState, requested)) return mrhd_abort_pingDiag(tool.name());
  CommandLine line;
  line.add("/bin/%s%s -H %s -c %s -W %s -s %s", tool.name(), instance_switch(), value(gPVCL.pingHost),
           value(gPVCL.pingCount), value(gPVCL.pingTimeout), value(gPVCL.pingDataSize));
  mrhd_launch_pingDiag(line.text());
}

void launch_trace_route() {
  constexpr Tool tool = {"traceroute_diag", "sec_traceroute_diag"};
  if (!asks_for_run(gPVCL.trState, requested)) return mrhd_abort_tracerouteDiag(tool.name());
  CommandLine line;
  line.add("/bin/%s %s %s -q %s -m %s -w %lu,3,10 --savetof%s", tool.name(), value(gPVCL.trHost),
           value(gPVCL.trDataSize), value(gPVCL.trTryCount), value(gPVCL.trMaxHopCount),
           number(gPVCL.trTimeout) / 1000, instance_switch());
  mrhd_launch_tracerouteDiag(line.text());
}

} // namespace kova::transaction
