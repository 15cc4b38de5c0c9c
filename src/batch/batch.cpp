// The batch validation: the nine groups in their order, and what is done with each.
#include "src/diagnostics/groups.hpp"
#include "src/lan/groups.hpp"
#include "src/wan/group.hpp"

namespace kova::transaction {

namespace {

// In the order in which they are judged, launched and released.
constexpr const Group *groups[] = {&lan::wifi_group,       &lan::lan_group,           &lan::dns_group,
                                   &diagnostics::download, &diagnostics::upload,      &diagnostics::udp_echo,
                                   &diagnostics::ping,     &diagnostics::trace_route, &wan::wan_apn_group};

void complete(const Group &group) {
  for (const GroupedValue &value : group.values) {
    if (value.slot().name != nullptr || value.label == nullptr) continue;
    const Text stored = load({group.section, value.key.current()});
    pvcl_set_slot(&value.slot(), value.label, stored.empty() ? value.if_empty : stored);
  }
}

void release(const Group &group) {
  group.touched() = 0;
  group.each_slot([](PendingValue &slot) { pvcl_free_slot(&slot); });
}

// The first group that fails ends it: no later one is looked at. What passed groups did stays done.
bool judge_all(FaultNames &faults) {
  for (const Group *group : groups) {
    if (group->touched() == 0) continue;
    complete(*group);
    if (group->judge != nullptr && !group->judge(*group, faults)) return false;
  }
  return true;
}

} // namespace

} // namespace kova::transaction

int kovaCheckTR069ParameterValues(char *faultNames, int faultNamesSize) {
  using namespace kova::transaction;
  FaultNames faults(faultNames, faultNamesSize);
  const bool passed = judge_all(faults);
  for (const Group *group : groups) {
    if (passed && group->touched() != 0 && group->launch != nullptr) group->launch();
    release(*group);
  }
  return passed ? 0 : -1;
}
